#include "leaders/LeaderTarget.h"

#include <dg/DPoint3D.h>
#include <dg/Location.h>
#include <zrannotations/AssemblyShapes.h>
#include <zrk/Instance.h>

namespace zrcallouts {

bool FindLeaderTarget(const du::SmartPtr<zrk::ShapeScene>& scene,
                      const du::SmartPtr<zrk::illustration::SbomInstance>& instance, bool isFirst,
                      LeaderTarget& target) {
  if (!scene || !instance) return false;
  target.scene = scene;
  target.instance = instance;
  target.isAssembly = instance->HasChildren();
  if (target.isAssembly) {
    zrannotations::GetShapeInstancesForAssembly(scene, instance, target.shapes);
    if (!isFirst) return !target.shapes.empty();
  }
  std::set<du::SmartPtr<zrk::Instance>> engineering;
  instance->GetEbomInstancesForWeld(engineering);
  const auto valid = FirstShownInstance(scene, engineering);
  if (!valid) return false;
  if (target.isAssembly) return true;
  target.shape = scene->GetShapeInstance(valid);
  return static_cast<bool>(target.shape);
}

du::SmartPtr<zrk::Instance> FirstShownInstance(const du::SmartPtr<zrk::ShapeScene>& scene,
                                               const std::set<du::SmartPtr<zrk::Instance>>& instances) {
  if (!scene) return {};
  for (const auto& instance : instances) {
    if (scene->GetShapeInstance(instance)) return instance;
  }
  return {};
}

void InitializeOn(const LeaderTarget& target, const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate,
                  zrannotations::Callout& callout) {
  if (target.isAssembly) {
    callout.Initialize(callouttemplate, target.scene, target.instance);
  } else {
    callout.Initialize(callouttemplate, target.shape);
  }
}

du::SmartPtr<zrannotations::CalloutLeader> AddLeaderOn(const LeaderTarget& target, bool hidden,
                                                       zrannotations::Callout& callout) {
  dg::DPoint3D point = dg::DPoint3D::ORIGIN;
  du::SmartPtr<zrannotations::CalloutLeader> leader;
  if (target.isAssembly) {
    const dg::Location location = callout.CalculateAssemblyRoughLocation(target.shapes);
    callout.CalculateAssemblyAnchor(target.shapes, point);
    leader = callout.CreateCalloutLeader(point, location, target.instance, target.shapes);
  } else {
    callout.CalculateAnchor(target.shape, point);
    leader = callout.CreateCalloutLeader(point, target.shape);
  }
  if (!leader) return leader;
  if (hidden) leader->SetHidden(true);
  callout.ConnectLeader(leader);
  return leader;
}

}  // namespace zrcallouts
