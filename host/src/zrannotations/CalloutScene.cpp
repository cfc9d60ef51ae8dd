// How a callout follows the scene it is in.

#include <atomic>

#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSet.h>
#include <zrk/Instance.h>
#include <zrk/Scene.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/View.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

#include "ShapeGeometry.h"

namespace zrannotations {

void Callout::UpdateWithCalloutInfo(const SymbolMap& symbols, InsetTable& insets) {
  UpdateWithCalloutInfo();
  const du::SmartPtr<Callout> self(this);
  for (const du::SmartPtr<CalloutLeader>& leader : GetFollowingLeaders()) {
    const du::SmartPtr<zrk::ShapeInstance> shape = leader->GetShapeInstance();
    const auto symbol = shape ? symbols.find(shape->GetInstance()) : symbols.end();
    if (symbol != symbols.end() && symbol->second) leader->SetSymbolId(symbol->second->Id());
  }
  // Leaders of members are not drawn: the leaders of a combined callout are its own.
  for (const du::SmartPtr<CalloutLeader>& leader : GetLeaders()) {
    if (const du::SmartPtr<Inset> inset = leader->GetInset()) insets[inset].insert(self);
  }
}

void Callout::UpdateWithCalloutInfo() {
  du::SmartPtr<zrk::Scene> scene = GetScene();
  if (!scene) scene = GetSubsetScene();
  const auto shapeScene = du::DynamicCast<zrk::ShapeScene>(scene);
  for (const du::SmartPtr<CalloutLeader>& leader : GetFollowingLeaders()) leader->Resolve(shapeScene);
}

void Callout::OnShapeInstanceCreate(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  for (const du::SmartPtr<CalloutLeader>& leader : GetFollowingLeaders()) leader->OnShapeInstanceCreate(shapeInstance);
}

void Callout::OnShapeInstanceLocation(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  const du::SmartPtr<CalloutLeader> first = GetLabelPlacementState() == 1 ? GetLeaderAtPos(0) : nullptr;
  const dg::DPoint3D before = first ? first->GetAnchor() : dg::DPoint3D();
  bool moved = false;
  for (const du::SmartPtr<CalloutLeader>& leader : GetFollowingLeaders()) {
    if (leader->OnShapeInstanceLocation(shapeInstance)) moved = true;
  }
  if (!moved) return;
  if (first) {
    const dg::DVec3 way = first->GetAnchor() - before;
    const dp::MutexGuard guard(mutex_);
    dg::DPoint3D& position = label_.position;
    position = dg::DPoint3D(position.x + way.x, position.y + way.y, position.z + way.z);
  }
  NotifyModified(true);
}

void Callout::SetVisible(const std::string& id, bool visible) {
  if (id.empty()) return;
  for (const du::SmartPtr<CalloutLeader>& leader : GetFollowingLeaders()) {
    const bool pointsAtId = leader->GetAssemblyInstanceId() == id || leader->GetShapeInstanceId() == id;
    if (pointsAtId) leader->SetVisible(visible);
  }
}

void Callout::SetVisibleWithinInsetBounds(const du::SmartPtr<Inset>& inset) {
  {
    const dp::MutexGuard guard(mutex_);
    ++counters_.withinInsetBounds;
  }
  if (!inset) return;
  for (const du::SmartPtr<CalloutLeader>& leader : GetFollowingLeaders()) {
    if (leader->GetInset() == inset) leader->SetWithinInsetBounds(inset->ContainsPoint(leader->GetAnchor()));
  }
}

unsigned Callout::GetVisibleWithinInsetBoundsCount() const {
  const dp::MutexGuard guard(mutex_);
  return counters_.withinInsetBounds;
}

void Callout::AttachSubsetScene(const du::SmartPtr<zrk::Scene>& scene, const std::string& name) {
  // The link of the scene's set, not the scene: the scene holds its set, and the set the callout.
  const du::SmartPtr<zrk::AnnoSet> set = scene ? scene->GetAnnoSet() : nullptr;
  const SceneLink link = set ? set->GetSceneLink() : nullptr;
  const dp::MutexGuard guard(mutex_);
  subsetScene_ = link;
  subsetSceneName_ = name;
}

du::SmartPtr<zrk::Scene> Callout::GetSubsetScene() const {
  SceneLink link;
  {
    const dp::MutexGuard guard(mutex_);
    link = subsetScene_;
  }
  return link ? link->Get() : nullptr;
}

std::string Callout::GetSubsetSceneName() const {
  const dp::MutexGuard guard(mutex_);
  return subsetSceneName_;
}

void Callout::BringToFront() {
  static std::atomic<std::uint64_t> topmost{0};
  const dp::MutexGuard guard(mutex_);
  zOrder_ = ++topmost;
}

std::uint64_t Callout::GetZOrder() const {
  const dp::MutexGuard guard(mutex_);
  return zOrder_;
}

void Callout::RefreshColors() {
  const dp::MutexGuard guard(mutex_);
  ++counters_.refreshColors;
}

unsigned Callout::GetRefreshColorsCount() const {
  const dp::MutexGuard guard(mutex_);
  return counters_.refreshColors;
}

void Callout::NotifyCalloutChanged() {
  {
    const dp::MutexGuard guard(mutex_);
    ++counters_.notifyChanged;
  }
  const du::SmartPtr<zrk::Scene> scene = GetScene();
  const du::SmartPtr<zrk::View> view = scene ? scene->GetView(0) : nullptr;
  if (view) view->SetDirty(true);
  NotifyModified(false);
}

unsigned Callout::GetNotifyCalloutChangedCount() const {
  const dp::MutexGuard guard(mutex_);
  return counters_.notifyChanged;
}

}  // namespace zrannotations
