#pragma once

#include <du/Export.h>
#include <zrk/Observer.h>

namespace zrkapp::illustration {

/// Hears what happens to the structure of the authoring application; every reaction is empty here.
class ZR_HOST_API OrreryAppObserver : public zrk::Observer {
public:
  ~OrreryAppObserver() override;

  virtual void OnStructureNew();
  virtual void OnStructureOpened();
  virtual void OnStructureClosed();
  virtual void OnStructureReplaced();
  virtual void OnStructureUpdated();
  virtual void OnStructurePropertiesChanged();
  virtual void OnPublishStateChanged();
};

}  // namespace zrkapp::illustration
