#include <zrk/ShapeView.h>

#include <zrk/MakeObject.h>
#include <zrk/PickEvent.h>
#include <zrk/PickService.h>
#include <zrk/SceneListener.h>
#include <zrk/ShapeScene.h>

#include "BoxPicks.h"

namespace zrk {

namespace {

std::vector<du::SmartPtr<SceneListener>> GetListeners(const View& view) {
  const du::SmartPtr<Scene> scene = view.GetScene();
  return scene ? scene->GetListeners() : std::vector<du::SmartPtr<SceneListener>>();
}

}  // namespace

ShapeView::ShapeView() : link_(std::make_shared<BackLink<ShapeView>>()), boxPicks_(MakeObject<BoxPicks>()) {
  link_->Set(this);
}

ShapeView::~ShapeView() {
  link_->Set(nullptr);
}

du::SmartPtr<ShapeScene> ShapeView::GetShapeScene() const {
  return du::DynamicCast<ShapeScene>(GetScene());
}

void ShapeView::GetBackgroundColors(dg::Color& first, dg::Color& second, dg::Color& third) const {
  const dp::MutexGuard guard(mutex_);
  first = background_[0];
  second = background_[1];
  third = background_[2];
}

dg::Camera3D ShapeView::GetCamera() const {
  const dp::MutexGuard guard(mutex_);
  return camera_;
}

int ShapeView::GetWindowWidth() const {
  const dp::MutexGuard guard(mutex_);
  return windowWidth_;
}

int ShapeView::GetWindowHeight() const {
  const dp::MutexGuard guard(mutex_);
  return windowHeight_;
}

du::SmartPtr<PickService> ShapeView::GetPickService() const {
  const dp::MutexGuard guard(mutex_);
  return pickService_;
}

const std::shared_ptr<BackLink<ShapeView>>& ShapeView::GetLink() const {
  return link_;
}

void ShapeView::RequestPick(const du::SmartPtr<PickEvent>& event) {
  if (!event) return;
  const du::SmartPtr<PickService> service = GetPickService();
  if (service) {
    service->RequestPick(event);
  } else if (GetCamera() != dg::Camera3D()) {
    boxPicks_->RequestPick(event);
  }
}

void ShapeView::SetBackgroundColors(const dg::Color& first, const dg::Color& second, const dg::Color& third) {
  {
    const dp::MutexGuard guard(mutex_);
    background_ = {first, second, third};
  }
  for (const auto& listener : GetListeners(*this)) listener->OnBackgroundColor(this);
}

void ShapeView::SetCamera(const dg::Camera3D& camera) {
  const dp::MutexGuard guard(mutex_);
  camera_ = camera;
}

void ShapeView::SetWindowSize(int width, int height) {
  {
    const dp::MutexGuard guard(mutex_);
    windowWidth_ = width;
    windowHeight_ = height;
  }
  for (const auto& listener : GetListeners(*this)) listener->OnWindowSize();
}

void ShapeView::SetPickService(const du::SmartPtr<PickService>& service) {
  du::SmartPtr<PickService> previous = service;
  const dp::MutexGuard guard(mutex_);
  pickService_.Swap(previous);
}

void ShapeView::FireTimeout() {
  dg::Camera3D kept;
  {
    const dp::MutexGuard guard(mutex_);
    kept = lastCamera_;
  }
  // Every listener compares with the same camera, also after another one has moved its copy on.
  dg::Camera3D next = kept;
  for (const auto& listener : GetListeners(*this)) {
    dg::Camera3D camera = kept;
    listener->OnHandleTimeoutEvent(this, camera);
    if (camera != kept) next = camera;
  }
  const dp::MutexGuard guard(mutex_);
  lastCamera_ = next;
}

}  // namespace zrk
