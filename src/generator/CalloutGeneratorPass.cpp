// The callouts of one pass: one with a leader an instance, or one an instance, as the engine's settings say.
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/Instance.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

#include "leaders/LeaderTarget.h"
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
  const auto scene = du::DynamicCast<zrk::ShapeScene>(scene_);
  du::SmartPtr<Callout> passCallout;
  for (const auto& instance : runSet) {
    LeaderTarget target;
    if (!FindLeaderTarget(scene, instance, !passCallout, target)) continue;
    if (passCallout && (combine || drawOne)) {
      AddLeaderOn(target, drawOne, *passCallout);
      continue;
    }
    const auto callout = MakeCallout(target);
    if (!callout) continue;
    made.push_back(callout);
    if (!passCallout) passCallout = callout;
  }
}

// The second set and the flag do not change the choice.
du::SmartPtr<zrk::Instance> CalloutGenerator::FindValidInstance(const EngineeringSet& instances,
                                                                const EngineeringSet& /*others*/, bool /*flag*/) {
  return FirstShownInstance(du::DynamicCast<zrk::ShapeScene>(scene_), instances);
}

du::SmartPtr<Callout> CalloutGenerator::MakeCallout(const LeaderTarget& target) const {
  du::SmartPtr<Callout> callout(new Callout);
  if (!callout) return callout;
  InitializeOn(target, engine_->GetTemplate(), *callout);
  if (needsItemList_ && !plain_ && !needsProperty_) callout->SetItemId(CurrentItemId());
  return callout;
}

}  // namespace zrcallouts
