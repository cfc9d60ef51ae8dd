#include <zrk/Annotation.h>

#include <atomic>

#include <zrk/Scene.h>
#include <zrk/SceneListener.h>

namespace zrk {

namespace {

unsigned TakeId() {
  static std::atomic<unsigned> lastId{0};
  return ++lastId;
}

}  // namespace

Annotation::Annotation(const du::Symbol& annotationClass) : class_(annotationClass), id_(TakeId()) {}

Annotation::~Annotation() = default;

du::Symbol Annotation::GetClass() const {
  const dp::MutexGuard guard(annotationMutex_);
  return class_;
}

void Annotation::SetClass(const du::Symbol& annotationClass) {
  const dp::MutexGuard guard(annotationMutex_);
  class_ = annotationClass;
}

unsigned Annotation::Id() const {
  return id_;
}

du::SmartPtr<Scene> Annotation::GetScene() const {
  const SceneLink link = GetSceneLink();
  return link ? link->Get() : nullptr;
}

unsigned Annotation::GetAnnotationType() const {
  return OtherKind;
}

void Annotation::NotifyModified(bool geometryOnly) {
  const du::SmartPtr<Scene> scene = GetScene();
  if (!scene) return;
  const du::SmartPtr<Annotation> self(this);
  for (const du::SmartPtr<SceneListener>& listener : scene->GetListeners()) {
    listener->OnAnnotationModified(self, geometryOnly);
  }
}

void Annotation::SetSceneLink(const SceneLink& link) {
  const dp::MutexGuard guard(annotationMutex_);
  sceneLink_ = link;
}

Annotation::SceneLink Annotation::GetSceneLink() const {
  const dp::MutexGuard guard(annotationMutex_);
  return sceneLink_;
}

void Annotation::OnEnteredSet() {}

}  // namespace zrk
