// Callouts follow their parts: shape instances that are created, moved, shown, hidden or removed.
#include <dg/DPoint3D.h>
#include <dp/ReadWriteLock.h>
#include <zrannotations/AssemblyShapes.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSet.h>
#include <zrk/Instance.h>
#include <zrk/Operation.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/SbomInstance.h>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrk::illustration::SbomInstance;

namespace zrcallouts {

namespace {

// Calls `visit(id, sbom)` for the instance and every assembly above it, up to the root. A 3D symbol stands alone.
template <class Visitor>
void ForEachLevel(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance, Visitor visit) {
  const auto instance = shapeInstance ? shapeInstance->GetInstance() : nullptr;
  if (!instance) return;
  if (instance->Is3dSymbol()) {
    visit(hostlayer::IdOf(instance), du::SmartPtr<SbomInstance>());
    return;
  }
  for (auto sbom = instance->GetSbomInstance(); sbom; sbom = sbom->GetParent()) visit(hostlayer::IdOf(sbom), sbom);
}

}  // namespace

void Callouts::OnShapeInstanceCreate(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  const auto instance = shapeInstance ? shapeInstance->GetInstance() : nullptr;
  const auto sbom = instance ? instance->GetSbomInstance() : nullptr;
  if (!sbom) return;
  const std::string id = hostlayer::IdOf(sbom);
  for (const auto& callout : CopyOfCalloutsAt(id)) {
    callout->OnShapeInstanceCreate(shapeInstance);
    if (callout->GetLeaderLineCount(true) > callout->GetLeaderLineCount(false)) {
      callout->UpdateWithCalloutInfo();
      callout->SetLabelPosition(callout->GetPosition());
    }
    if (IsRegistered(callout)) callout->AttachSubsetScene(GetScene(), id);
  }
}

void Callouts::OnShapeInstanceLocation(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  ForEachLevel(shapeInstance, [&](const std::string& id, const du::SmartPtr<SbomInstance>& /*sbom*/) {
    for (const auto& callout : CopyOfCalloutsAt(id)) callout->OnShapeInstanceLocation(shapeInstance);
  });
}

void Callouts::OnShapeInstanceVisibility(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance, bool visible) {
  const auto shapeScene = shapeInstance ? shapeInstance->GetShapeScene() : nullptr;
  bool shown = visible;  // a level without structure instance keeps the value found last
  ForEachLevel(shapeInstance, [&](const std::string& id, const du::SmartPtr<SbomInstance>& sbom) {
    const CalloutSet callouts = CopyOfCalloutsAt(id);
    if (callouts.empty()) return;
    if (sbom) shown = zrannotations::IsPartOrAssemblyVisible(shapeScene, sbom);
    for (const auto& callout : callouts) {
      if (IsRegistered(callout)) callout->SetVisible(id, shown);
    }
  });
}

void Callouts::OnShapeInstanceRemove(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  const auto instance = shapeInstance ? shapeInstance->GetInstance() : nullptr;
  if (!instance) return;
  if (instance->Is3dSymbol()) {
    const auto scene = GetScene();
    const auto annoSet = scene ? scene->GetAnnoSet() : nullptr;
    // A removed 3D symbol takes its callouts along, without an undo step of their own.
    for (const auto& callout : CopyOfCalloutsAt(hostlayer::SymbolKeyOf(instance))) {
      if (annoSet) annoSet->RemoveAnnotationWithDependencies(callout, du::SmartPtr<zrk::Operation>());
    }
  }
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  symbolAnnotations_.erase(instance);
}

void Callouts::UpdateLeaderAnchor(const du::SmartPtr<Callout>& callout,
                                  const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  if (!callout) return;
  for (const auto& leader : callout->GetLeaders()) {
    dg::DPoint3D point = dg::DPoint3D::ORIGIN;
    callout->CalculateAnchor(shapeInstance, point);
    leader->SetAnchor(point);
    if (const auto inset = leader->GetInset()) callout->SetVisibleWithinInsetBounds(inset);
  }
  callout->NotifyCalloutChanged();
}

}  // namespace zrcallouts
