#pragma once

#include <du/Export.h>
#include <zrk/Observer.h>

namespace zrk {

/// Hears about the annotation-set table: a begin, one or more changes, an end. All notifications do nothing here.
class ZR_HOST_API AnnoSetTableObserver : public Observer {
public:
  ~AnnoSetTableObserver() override;

  virtual void OnBeginChange();
  virtual void OnEndChange();
  virtual void OnTableChanged();
};

}  // namespace zrk
