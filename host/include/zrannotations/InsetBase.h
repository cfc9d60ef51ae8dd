#pragma once

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <zrannotations/Annotation.h>
#include <zrannotations/InsetInfo.h>

namespace zrannotations {

/// What every kind of inset has. [any-thread]
class ZR_HOST_API InsetBase : public zrk::Annotation {
public:
  InsetBase();
  ~InsetBase() override;

  [[nodiscard]] unsigned GetAnnotationType() const override;
  [[nodiscard]] InsetInfo GetInsetInfo() const;
  void SetInsetInfo(const InsetInfo& info);
  /// A custom inset has left its template's ways.
  [[nodiscard]] bool IsCustom() const;
  void SetCustom(bool custom);

private:
  mutable dp::Mutex baseMutex_;
  InsetInfo info_ ZR_GUARDED_BY(baseMutex_);
  bool custom_ ZR_GUARDED_BY(baseMutex_) = false;
};

}  // namespace zrannotations
