#pragma once

#include <map>
#include <string>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

namespace zrk::illustration {

class PenHolder;

/// The pens of the process by name. Thread-safe.
class ZR_HOST_API PenPool : public virtual du::RefCounted {
public:
  /// Name of the narrow line: 0.25 mm.
  static const char* const PEN_THIN_STR;

  static du::SmartPtr<PenPool> GetPenPool();

  /// The pen of that name; made on first use, with 0.25 mm for the thin pen and 0.5 mm for any other.
  du::SmartPtr<PenHolder> UsePen(const std::string& name);

private:
  PenPool();
  ~PenPool() override;

  dp::Mutex mutex_;
  std::map<std::string, du::SmartPtr<PenHolder>> pens_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk::illustration
