// The callouts of one pass: one with a leader an instance, or one an instance, as the engine's settings say.
#include <dg/DPoint3D.h>
#include <dg/Location.h>
#include <zrannotations/AssemblyShapes.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/Instance.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

#include "generator/PassTarget.h"
#include "zrcallouts/CalloutGenerator.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;

namespace zrcallouts {

void CalloutGenerator::AddOnSelectedCategory(const InstanceSet& runSet) {
  CalloutVector made;
  AddOnSelectedCategory(runSet, made);
  FinalizeCallouts(made);
}

void CalloutGenerator::AddOnSelectedCategory(const InstanceSet& runSet, CalloutVector& made) {
  if (runSet.empty() || !engine_) return;
  const bool combine = engine_->GetCombineForSamePart();
  const bool drawOne = engine_->GetDrawOneForSamePart();
  du::SmartPtr<Callout> passCallout;
  for (const auto& instance : runSet) {
    PassTarget target;
    if (!FindTarget(instance, !passCallout, target)) continue;
    if (passCallout && (combine || drawOne)) {
      AddLeader(passCallout, instance, target, drawOne);
      continue;
    }
    const auto callout = MakeCallout(instance, target);
    if (!callout) continue;
    made.push_back(callout);
    if (!passCallout) passCallout = callout;
  }
}

// False when the instance has nothing in the scene to stand on. An assembly that opens a pass must have a valid
// engineering instance as a part must, although it is anchored on the set of its shapes.
bool CalloutGenerator::FindTarget(const SbomInstancePtr& instance, bool opensPass, PassTarget& target) {
  target.scene = du::DynamicCast<zrk::ShapeScene>(scene_);
  if (!target.scene || !instance) return false;
  target.isAssembly = instance->HasChildren();
  if (target.isAssembly) {
    zrannotations::GetShapeInstancesForAssembly(target.scene, instance, target.shapes);
    if (!opensPass) return !target.shapes.empty();
  }
  EngineeringSet engineering;
  instance->GetEbomInstancesForWeld(engineering);
  const auto valid = engineering.empty() ? nullptr : FindValidInstance(engineering, {}, false);
  if (!valid) return false;
  if (target.isAssembly) return true;
  target.shape = target.scene->GetShapeInstance(valid);
  return static_cast<bool>(target.shape);
}

// The first instance of the set that the scene shows; the other two arguments do not change the choice.
du::SmartPtr<zrk::Instance> CalloutGenerator::FindValidInstance(const EngineeringSet& instances,
                                                                const EngineeringSet& /*others*/, bool /*flag*/) {
  const auto scene = du::DynamicCast<zrk::ShapeScene>(scene_);
  if (!scene) return {};
  for (const auto& instance : instances) {
    if (scene->GetShapeInstance(instance)) return instance;
  }
  return {};
}

du::SmartPtr<Callout> CalloutGenerator::MakeCallout(const SbomInstancePtr& instance, const PassTarget& target) const {
  du::SmartPtr<Callout> callout(new Callout);
  if (!callout) return callout;
  const auto callouttemplate = engine_->GetTemplate();
  if (target.isAssembly) {
    callout->Initialize(callouttemplate, target.scene, instance);
  } else {
    callout->Initialize(callouttemplate, target.shape);
  }
  if (needsItemList_ && !plain_ && !needsProperty_) callout->SetItemId(CurrentItemId());
  return callout;
}

void CalloutGenerator::AddLeader(const du::SmartPtr<Callout>& callout, const SbomInstancePtr& instance,
                                 const PassTarget& target, bool hidden) const {
  dg::DPoint3D point = dg::DPoint3D::ORIGIN;
  du::SmartPtr<zrannotations::CalloutLeader> leader;
  if (target.isAssembly) {
    const dg::Location location = callout->CalculateAssemblyRoughLocation(target.shapes);
    callout->CalculateAssemblyAnchor(target.shapes, point);
    leader = callout->CreateCalloutLeader(point, location, instance, target.shapes);
  } else {
    callout->CalculateAnchor(target.shape, point);
    leader = callout->CreateCalloutLeader(point, target.shape);
  }
  if (!leader) return;
  if (hidden) leader->SetHidden(true);
  callout->ConnectLeader(leader);
}

}  // namespace zrcallouts
