#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Observer.h>

namespace zrannotations {

class Inset;

/// Hears of changes of an inset, on the changing thread with no host lock held. The base does nothing.
class ZR_HOST_API InsetObserver : public zrk::Observer {
public:
  ~InsetObserver() override;
  virtual void OnInsetBoundsChanged(const du::SmartPtr<Inset>& inset);
  virtual void OnInsetCaptionChanged(const du::SmartPtr<Inset>& inset);
  virtual void OnInsetVisibilityChanged(const du::SmartPtr<Inset>& inset, bool visible);
};

}  // namespace zrannotations
