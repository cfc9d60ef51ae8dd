#include <zrk/illustration/PenPool.h>

#include <zrk/MakeObject.h>
#include <zrk/illustration/PenHolder.h>

namespace zrk::illustration {

const char* const PenPool::PEN_THIN_STR = "Thin";

PenPool::PenPool() = default;

PenPool::~PenPool() = default;

du::SmartPtr<PenPool> PenPool::GetPenPool() {
  static const du::SmartPtr<PenPool> pool(new PenPool);
  return pool;
}

du::SmartPtr<PenHolder> PenPool::UsePen(const std::string& name) {
  // Narrow and wide lines of a drawing stand in the ratio one to two.
  constexpr double kNarrow = 0.25;
  constexpr double kWide = 0.5;
  const dp::MutexGuard guard(mutex_);
  auto& pen = pens_[name];
  if (!pen) pen = MakeObject<PenHolder>(dg::LengthUnit::MILLIMETER, name == PEN_THIN_STR ? kNarrow : kWide);
  return pen;
}

}  // namespace zrk::illustration
