#include <zrk/illustration/PenHolder.h>

namespace zrk::illustration {

PenHolder::PenHolder(dg::LengthUnit::Unit unit, double lineWeight, double haloWeight)
    : unit_(unit), lineWeight_(lineWeight), haloWeight_(haloWeight) {}

PenHolder::~PenHolder() = default;

dg::LengthUnit::Unit PenHolder::GetUnit() const {
  return unit_;
}

double PenHolder::GetLineWeight() const {
  return lineWeight_;
}

bool PenHolder::GetHalo() const {
  return haloWeight_ > 0.0;
}

double PenHolder::GetHaloWeight() const {
  return haloWeight_;
}

}  // namespace zrk::illustration
