#include <zrk/ShapeInstance.h>

#include <zrk/AddressArena.h>
#include <zrk/Instance.h>
#include <zrk/SceneListener.h>
#include <zrk/Shape.h>
#include <zrk/ShapeScene.h>

namespace zrk {

namespace {

AddressArena& GetArena() {
  // Never destroyed: shape instances may outlive every static object.
  static AddressArena* const arena = new AddressArena(sizeof(ShapeInstance));
  return *arena;
}

}  // namespace

void* ShapeInstance::operator new(std::size_t size) noexcept {
  return GetArena().Allocate(size);
}

void ShapeInstance::operator delete(void* memory) noexcept {
  GetArena().Free(memory);
}

ShapeInstance::ShapeInstance(const du::SmartPtr<Instance>& instance, const du::SmartPtr<Shape>& shape,
                             const dg::DBox& localBox, const dg::Location& location)
    : instance_(instance), shape_(shape), localBox_(localBox), location_(location) {}

ShapeInstance::~ShapeInstance() = default;

du::SmartPtr<Instance> ShapeInstance::GetInstance() const {
  return instance_;
}

du::SmartPtr<ShapeScene> ShapeInstance::GetShapeScene() const {
  return scene_.Get();
}

du::Symbol ShapeInstance::GetCurrentShapeSource() const {
  const dp::MutexGuard guard(mutex_);
  return shapeSource_;
}

du::SmartPtr<Shape> ShapeInstance::GetShape() const {
  return shape_;
}

bool ShapeInstance::IsVisible() const {
  const dp::MutexGuard guard(mutex_);
  return visible_;
}

dg::Location ShapeInstance::GetLocation() const {
  const dp::MutexGuard guard(mutex_);
  return location_;
}

dg::DBox ShapeInstance::GetBoundingBox() const {
  return localBox_;
}

void ShapeInstance::SetVisible(bool visible) {
  {
    const dp::MutexGuard guard(mutex_);
    visible_ = visible;
  }
  const auto scene = GetShapeScene();
  if (!scene) return;
  ++scene->changeCount_;
  for (const auto& listener : scene->GetListeners()) listener->OnShapeInstanceVisibility(this, visible);
}

void ShapeInstance::SetLocation(const dg::Location& location) {
  {
    const dp::MutexGuard guard(mutex_);
    location_ = location;
  }
  const auto scene = GetShapeScene();
  if (!scene) return;
  ++scene->changeCount_;
  for (const auto& listener : scene->GetListeners()) listener->OnShapeInstanceLocation(this);
}

void ShapeInstance::SetCurrentShapeSource(const du::Symbol& source) {
  const dp::MutexGuard guard(mutex_);
  shapeSource_ = source;
}

}  // namespace zrk
