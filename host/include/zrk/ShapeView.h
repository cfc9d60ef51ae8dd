#pragma once

#include <array>
#include <memory>

#include <dg/Camera3D.h>
#include <dg/Color.h>
#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/BackLink.h>
#include <zrk/View.h>

namespace zrk {

class PickEvent;
class PickService;
class ShapeScene;

/// A 3D view: camera, background, window. Events go to the listeners of its scene. [any-thread]
class ZR_HOST_API ShapeView : public View {
public:
  ShapeView();
  ~ShapeView() override;

  /// Null when the view's scene is missing or of another kind.
  [[nodiscard]] du::SmartPtr<ShapeScene> GetShapeScene() const;
  void GetBackgroundColors(dg::Color& first, dg::Color& second, dg::Color& third) const;
  [[nodiscard]] dg::Camera3D GetCamera() const;
  /// In pixels; 1600 x 1200 at first.
  [[nodiscard]] int GetWindowWidth() const;
  [[nodiscard]] int GetWindowHeight() const;
  /// Null while the view answers picks itself, from the boxes of its scene's shapes.
  [[nodiscard]] du::SmartPtr<PickService> GetPickService() const;
  /// For those that must not keep the view alive. Never null.
  [[nodiscard]] const std::shared_ptr<BackLink<ShapeView>>& GetLink() const;

  /// Hands the event to the view's pick service; without one it is answered before this returns. Dropped is an event of
  /// a view whose camera nobody has set yet: it has no picture.
  void RequestPick(const du::SmartPtr<PickEvent>& event);

  /// Announced as a change of the background.
  void SetBackgroundColors(const dg::Color& first, const dg::Color& second, const dg::Color& third);
  /// Announced to nobody: the timer finds it.
  void SetCamera(const dg::Camera3D& camera);
  /// Announced as a change of the window. The camera stays as it is.
  void SetWindowSize(int width, int height);
  void SetPickService(const du::SmartPtr<PickService>& service);
  /// The view's timer expired: announced with the camera kept from the previous time.
  void FireTimeout();

private:
  const std::shared_ptr<BackLink<ShapeView>> link_;
  const du::SmartPtr<PickService> boxPicks_;
  mutable dp::Mutex mutex_;
  std::array<dg::Color, 3> background_ ZR_GUARDED_BY(mutex_);
  dg::Camera3D camera_ ZR_GUARDED_BY(mutex_);
  dg::Camera3D lastCamera_ ZR_GUARDED_BY(mutex_);
  int windowWidth_ ZR_GUARDED_BY(mutex_) = 1600;
  int windowHeight_ ZR_GUARDED_BY(mutex_) = 1200;
  du::SmartPtr<PickService> pickService_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
