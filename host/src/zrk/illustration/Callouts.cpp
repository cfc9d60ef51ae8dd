#include <zrk/illustration/Callouts.h>

#include <zrannotations/Callout.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/EngineRelay.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SbomInstance.h>

namespace zrk::illustration {

Callouts::Callouts() = default;

Callouts::~Callouts() {
  DetachRelay();
}

void Callouts::Initialize(const du::SmartPtr<ShapeScene>& scene) {
  DetachRelay();
  const auto relay = scene ? MakeObject<EngineRelay>(this) : nullptr;
  {
    const dp::MutexGuard guard(sceneMutex_);
    scene_ = scene;
    relay_ = relay;
  }
  if (scene) scene->AddListener(relay);
}

void Callouts::InitializeShapeViewObserver() {}

void Callouts::OnSceneDestroy() {
  Destroy();
}

void Callouts::Destroy() {
  DetachRelay();
  du::SmartPtr<ShapeScene> scene;
  {
    const dp::MutexGuard guard(sceneMutex_);
    scene.Swap(scene_);
  }
  if (scene) CalloutEngineMgr::Instance().UnregisterEngine(scene, this);
}

void Callouts::UnregisterObservers() {
  DetachRelay();
}

du::SmartPtr<ShapeScene> Callouts::GetScene() const {
  const dp::MutexGuard guard(sceneMutex_);
  return scene_;
}

du::SmartPtr<AnnoSet> Callouts::GetAnnoSet() const {
  const auto scene = GetScene();
  return scene ? scene->GetAnnoSet() : nullptr;
}

void Callouts::DetachRelay() {
  du::SmartPtr<EngineRelay> relay;
  du::SmartPtr<ShapeScene> scene;
  {
    const dp::MutexGuard guard(sceneMutex_);
    relay.Swap(relay_);
    scene = scene_;
  }
  if (!relay) return;
  relay->Detach();
  if (scene) scene->RemoveListener(relay);
}

}  // namespace zrk::illustration
