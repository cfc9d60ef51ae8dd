#include <zrk/Scene.h>

#include <zrk/AnnoSet.h>
#include <zrk/UndoHistory.h>
#include <zrk/View.h>

namespace zrk {

Scene::Scene() = default;

Scene::~Scene() {
  DetachViews();
  SetAnnoSet(nullptr);
}

du::SmartPtr<View> Scene::GetView(unsigned index) const {
  const dp::MutexGuard guard(mutex_);
  return index < views_.size() ? views_[index] : nullptr;
}

du::SmartPtr<AnnoSet> Scene::GetAnnoSet() const {
  const dp::MutexGuard guard(mutex_);
  return annoSet_;
}

unsigned Scene::AddView(const du::SmartPtr<View>& view) {
  unsigned index = 0;
  {
    const dp::MutexGuard guard(mutex_);
    index = static_cast<unsigned>(views_.size());
    if (!view) return index;
    views_.push_back(view);
  }
  view->scene_.Set(this);
  if (index > 0) return index;
  for (const auto& listener : GetListeners()) listener->OnViewAttached(view);
  return index;
}

void Scene::SetAnnoSet(const du::SmartPtr<AnnoSet>& set) {
  du::SmartPtr<AnnoSet> previous = set;
  {
    const dp::MutexGuard guard(mutex_);
    annoSet_.Swap(previous);
  }
  if (previous == set) return;
  if (previous) previous->DetachScene();
  if (set) set->AttachScene(this);
}

void Scene::AddListener(const du::SmartPtr<SceneListener>& listener) {
  listeners_.Register(listener);
}

void Scene::RemoveListener(const du::SmartPtr<SceneListener>& listener) {
  listeners_.Unregister(listener);
}

std::vector<du::SmartPtr<SceneListener>> Scene::GetListeners() const {
  return listeners_.Copy();
}

void Scene::Destroy() {
  {
    const dp::MutexGuard guard(mutex_);
    if (isDestroyed_) return;
    isDestroyed_ = true;
  }
  // The history may hold the last references to this scene.
  const du::SmartPtr<Scene> self(this);
  for (const auto& listener : GetListeners()) listener->OnSceneDestroy();
  for (const auto& listener : GetListeners()) RemoveListener(listener);
  UndoHistory::Clear(self);
  const du::SmartPtr<AnnoSet> set = GetAnnoSet();
  SetAnnoSet(nullptr);
  if (set) set->Close();
  DetachViews();
}

bool Scene::IsDestroyed() const {
  const dp::MutexGuard guard(mutex_);
  return isDestroyed_;
}

void Scene::DetachViews() {
  std::vector<du::SmartPtr<View>> views;
  {
    const dp::MutexGuard guard(mutex_);
    views.swap(views_);
  }
  for (const auto& view : views) view->scene_.Clear(this);
}

}  // namespace zrk
