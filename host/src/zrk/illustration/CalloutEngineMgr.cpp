#include <zrk/illustration/CalloutEngineMgr.h>

#include <vector>

#include <zrannotations/Callout.h>
#include <zrk/AnnoSet.h>
#include <zrk/Annotation.h>
#include <zrk/ShapeScene.h>
#include <zrk/View.h>
#include <zrk/illustration/Callouts.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SbomInstance.h>

namespace zrk::illustration {

namespace {

/// Tells a new engine what the scene holds. Callouts come last, since they refer to symbols and insets.
void AnnounceScene(const du::SmartPtr<ShapeScene>& scene, const du::SmartPtr<Callouts>& engine) {
  std::vector<du::SmartPtr<Annotation>> annotations;
  if (const auto set = scene->GetAnnoSet()) annotations = set->GetAnnotations();
  for (const bool callouts : {false, true}) {
    for (const auto& annotation : annotations) {
      if ((annotation->GetAnnotationType() == Annotation::CalloutKind) == callouts) engine->OnAddAnnotation(annotation);
    }
  }
  if (scene->GetView(0)) engine->InitializeShapeViewObserver();
}

}  // namespace

CalloutEngineMgr::CalloutEngineMgr() = default;

CalloutEngineMgr::~CalloutEngineMgr() = default;

CalloutEngineMgr& CalloutEngineMgr::Instance() {
  // Never destroyed: engines that are left at the end must not be released among dying static objects.
  static CalloutEngineMgr* const instance = new CalloutEngineMgr;
  return *instance;
}

du::SmartPtr<Callouts> CalloutEngineMgr::GetCalloutsEngineForScene(const du::SmartPtr<ShapeScene>& scene) const {
  const dp::MutexGuard guard(mutex_);
  const auto engine = engines_.find(scene);
  return engine == engines_.end() ? nullptr : engine->second;
}

void CalloutEngineMgr::SetComponent(EntryPoint create) {
  const dp::MutexGuard guard(mutex_);
  create_ = create;
}

CalloutEngineMgr::EntryPoint CalloutEngineMgr::GetComponent() const {
  const dp::MutexGuard guard(mutex_);
  return create_;
}

du::SmartPtr<Callouts> CalloutEngineMgr::CreateEngineForScene(const du::SmartPtr<ShapeScene>& scene) {
  if (!scene) return nullptr;
  if (const auto present = GetCalloutsEngineForScene(scene)) return present;
  const EntryPoint create = GetComponent();
  du::SmartPtr<du::RefCounted> component;
  if (!create || !create("create", "callouts", "calloutengine", component)) return nullptr;
  const auto engine = du::DynamicCast<Callouts>(component);
  if (!engine) return nullptr;
  engine->Initialize(scene);
  RegisterEngine(scene, engine);
  AnnounceScene(scene, engine);
  return engine;
}

void CalloutEngineMgr::RegisterEngine(const du::SmartPtr<ShapeScene>& scene, const du::SmartPtr<Callouts>& engine) {
  if (!scene || !engine) return;
  du::SmartPtr<Callouts> previous = engine;
  const dp::MutexGuard guard(mutex_);
  engines_[scene].Swap(previous);
}

void CalloutEngineMgr::UnregisterEngine(const du::SmartPtr<ShapeScene>& scene) {
  UnregisterEngine(scene, nullptr);
}

void CalloutEngineMgr::UnregisterEngine(const du::SmartPtr<ShapeScene>& scene, const Callouts* engine) {
  // The last reference to engine and scene may go here, which must not happen with the table locked.
  du::SmartPtr<ShapeScene> releasedScene;
  du::SmartPtr<Callouts> releasedEngine;
  const dp::MutexGuard guard(mutex_);
  const auto entry = engines_.find(scene);
  if (entry == engines_.end() || (engine && entry->second.Get() != engine)) return;
  releasedScene = entry->first;
  releasedEngine.Swap(entry->second);
  engines_.erase(entry);
}

}  // namespace zrk::illustration
