#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Observer.h>

namespace zrk {

class Scene;

/// Hears about the world. All notifications do nothing here.
class ZR_HOST_API WorldObserver : public Observer {
public:
  ~WorldObserver() override;

  virtual void OnAnnoSetTableChanged();
  /// The localizer's current language is another one now.
  virtual void OnLanguageChanged();
  virtual void OnSceneAdded(const du::SmartPtr<Scene>& scene);
  /// The world shuts down; called before anything of it ends.
  virtual void OnWorldDestroy();
};

}  // namespace zrk
