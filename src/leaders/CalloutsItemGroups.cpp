// The leaders of an item's callouts follow the item's group of instances.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/CombinedCallout.h>
#include <zrk/AnnoSet.h>
#include <zrk/Instance.h>
#include <zrk/Operation.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/SbomInstance.h>

#include <algorithm>

#include "engine/OnFailure.h"
#include "engine/Refiling.h"
#include "hostlayer/HostLayer.h"
#include "leaders/LeaderTarget.h"
#include "leaders/UpdateItemGroupLeadersOperationStep.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CalloutLeader;
using zrannotations::CombinedCallout;
using zrk::illustration::SbomInstance;
using InstanceSet = std::set<du::SmartPtr<SbomInstance>>;

namespace zrcallouts {

using StepPtr = du::SmartPtr<UpdateItemGroupLeadersOperationStep>;

/// What happened to an item's group of instances, and the operation that it happened in.
struct Callouts::GroupChange {
  const std::uint32_t itemId;
  const InstanceSet& added;
  const InstanceSet& removed;
  const du::SmartPtr<zrk::Operation>& operation;
  std::vector<du::SmartPtr<Callout>> changed;  ///< Their new leaders have provisional anchors.
};

namespace {

bool StandsOnAny(const CalloutLeader& leader, const InstanceSet& instances) {
  const auto instance = leader.GetSbomInstance();
  return instance && instances.count(instance) != 0;
}

// The instances that no leader of the callout stands on yet.
InstanceSet WithoutLeader(const Callout& callout, InstanceSet instances) {
  for (const auto& leader : callout.GetLeaders()) instances.erase(leader->GetSbomInstance());
  return instances;
}

// A callout whose leaders are all hidden would show no part at all.
void ShowFirstWhenAllHidden(const Callout& callout) {
  const auto leaders = callout.GetLeaders();
  const bool allHidden = std::all_of(leaders.begin(), leaders.end(), [](const auto& l) { return l->IsHidden(); });
  if (allHidden && !leaders.empty()) leaders.front()->SetHidden(false);
}

}  // namespace

void Callouts::BeginGeneration() {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  ++generations_;
}

void Callouts::EndGeneration() {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  --generations_;
}

// A removal may take further callouts along: those are passed over when their turn in the copy comes.
void Callouts::UpdateItemGroupCalloutLeaders(std::uint32_t itemId, const InstanceSet& added, const InstanceSet& removed,
                                             const du::SmartPtr<zrk::Operation>& operation) {
  GroupChange change{itemId, added, removed, operation, {}};
  {
    const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
    if (generations_ != 0 || (added.empty() && removed.empty()) || hostlayer::IsReplaying(GetScene())) return;
    bool changed = false;
    for (const auto& callout : CopyOfCarriers(itemId)) {
      if (!hostlayer::CarriesItem(callout, itemId) || !IsRegistered(callout)) continue;
      const auto combined = du::DynamicCast<CombinedCallout>(callout);
      if (combined ? UpdateMembersOf(combined, change) : UpdateLeadersOf(callout, change)) changed = true;
    }
    if (changed) MarkViewDirty();
  }
  // Only now: whoever answers may want the engine's lock on another thread.
  for (const auto& callout : change.changed) RequestAnchorPick(callout);
}

bool Callouts::UpdateLeadersOf(const du::SmartPtr<Callout>& callout, GroupChange& change) {
  if (LosesEveryLeader(*callout, change)) {
    if (const auto annoSet = GetAnnoSet()) annoSet->RemoveAnnotationWithDependencies(callout, change.operation);
    return true;
  }
  const StepPtr step(new UpdateItemGroupLeadersOperationStep(callout, du::SmartPtr<Callouts>(this)));
  {
    Refiling refiling(*this, callout);
    const OnFailure putBack([&] {
      if (step) step->PutBack();
    });
    const bool changed = ChangeLeaders(callout, change);
    if (changed) RegenerateCalloutLabel(callout, true);  // it shows the properties of the first leader's part
    refiling.Finish();
    if (!changed) return false;
  }
  if (change.operation) change.operation->AddStep(step);
  callout->NotifyCalloutChanged();
  return true;
}

// The combined callout stands on the leaders of its first member. A member without leaders goes, as the members of a
// removed item do, and a single one that is left goes with the combined callout.
bool Callouts::UpdateMembersOf(const du::SmartPtr<CombinedCallout>& combined, GroupChange& change) {
  const StepPtr step(new UpdateItemGroupLeadersOperationStep(combined, du::SmartPtr<Callouts>(this)));
  auto& members = combined->GetCalloutVec();
  std::vector<du::SmartPtr<Callout>> gone;
  {
    Refiling refiling(*this, combined);
    const OnFailure putBack([&] {
      if (step) step->PutBack();
    });
    bool changed = false;
    for (const auto& member : members) {
      if (!hostlayer::CarriesItem(member, change.itemId) || !ChangeLeaders(member, change)) continue;
      changed = true;
      if (member->GetLeaders().empty()) gone.push_back(member);
    }
    if (!changed) {
      refiling.Finish();
      return false;
    }
    std::erase_if(members, [](const auto& member) { return member->GetLeaderLineCount(true) == 0; });
    combined->UpdateLeaderLine();
    change.changed.push_back(combined);  // its leaders are copies of its own
    SetCalloutText(combined);
    refiling.Finish();
  }
  if (change.operation) change.operation->AddStep(step);
  for (const auto& member : gone) SetIndicated(member, false);
  const auto annoSet = members.size() < 2 ? GetAnnoSet() : nullptr;
  if (annoSet) annoSet->RemoveAnnotationFromSet(combined, change.operation);
  combined->NotifyCalloutChanged();
  return true;
}

bool Callouts::LosesEveryLeader(const Callout& callout, const GroupChange& change) const {
  const auto leaders = callout.GetLeaders();
  const bool gains = GetDrawOneForSamePart() || GetCombineForSamePart();
  const auto toAdd = gains ? WithoutLeader(callout, change.added) : InstanceSet();
  const auto scene = du::DynamicCast<zrk::ShapeScene>(GetScene());
  LeaderTarget target;
  const bool gainsOne = std::any_of(toAdd.begin(), toAdd.end(), [&](const auto& instance) {
    return FindLeaderTarget(scene, instance, false, target);
  });
  if (leaders.empty() || gainsOne) return false;
  return std::all_of(leaders.begin(), leaders.end(), [&](const auto& l) { return StandsOnAny(*l, change.removed); });
}

// With one callout an item it gains the instances that came; it loses those that went in any case.
bool Callouts::ChangeLeaders(const du::SmartPtr<Callout>& callout, GroupChange& change) {
  const bool drawOne = GetDrawOneForSamePart();
  bool changed = false;
  const InstanceSet toAdd = drawOne || GetCombineForSamePart() ? WithoutLeader(*callout, change.added) : InstanceSet();
  for (const auto& leader : callout->GetLeaders()) {
    if (!StandsOnAny(*leader, change.removed)) continue;
    callout->DisconnectLeader(leader);
    changed = true;
  }
  const auto scene = du::DynamicCast<zrk::ShapeScene>(GetScene());
  for (const auto& instance : toAdd) {
    LeaderTarget target;
    if (FindLeaderTarget(scene, instance, false, target) && AddLeaderOn(target, drawOne, *callout)) changed = true;
  }
  if (!changed) return false;
  ShowFirstWhenAllHidden(*callout);
  change.changed.push_back(callout);
  return true;
}

}  // namespace zrcallouts
