#pragma once

#include <dg/DBox.h>
#include <dg/Location.h>
#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/BackLink.h>
#include <zrk/Object.h>

namespace zrk {

class Instance;
class Shape;
class ShapeScene;

/// A shape placed in a scene for one design-side instance. Thread-safe. Each change is in place before the scene's
/// listeners hear of it, on the changing thread; a shape instance that is in no scene notifies nobody. Allocated at
/// ascending addresses, so that the order of addresses is the order of creation.
class ZR_HOST_API ShapeInstance : public Object {
public:
  /// `localBox` is in the shape's own frame, which `location` places in model space. Visible at first.
  ShapeInstance(const du::SmartPtr<Instance>& instance, const du::SmartPtr<Shape>& shape, const dg::DBox& localBox,
                const dg::Location& location);
  ~ShapeInstance() override;

  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* memory) noexcept;

  [[nodiscard]] du::SmartPtr<Instance> GetInstance() const;
  /// The scene that shows it; null while in none. During the scene's removal notification still the scene.
  [[nodiscard]] du::SmartPtr<ShapeScene> GetShapeScene() const;
  [[nodiscard]] bool IsInScene() const { return scene_.HasTarget(); }
  [[nodiscard]] du::Symbol GetCurrentShapeSource() const;
  [[nodiscard]] du::SmartPtr<Shape> GetShape() const;
  [[nodiscard]] bool IsVisible() const;
  [[nodiscard]] dg::Location GetLocation() const;
  /// In the shape's own frame; GetLocation places it in model space.
  [[nodiscard]] dg::DBox GetBoundingBox() const;

  void SetVisible(bool visible);
  void SetLocation(const dg::Location& location);
  /// Notifies nobody.
  void SetCurrentShapeSource(const du::Symbol& source);

private:
  friend class ShapeScene;

  const du::SmartPtr<Instance> instance_;
  const du::SmartPtr<Shape> shape_;
  const dg::DBox localBox_;
  BackLink<ShapeScene> scene_;
  mutable dp::Mutex mutex_;
  dg::Location location_ ZR_GUARDED_BY(mutex_);
  du::Symbol shapeSource_ ZR_GUARDED_BY(mutex_);
  bool visible_ ZR_GUARDED_BY(mutex_) = true;
};

}  // namespace zrk
