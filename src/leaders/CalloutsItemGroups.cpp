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

std::vector<du::SmartPtr<Callout>> CalloutsOfItem(const du::SmartPtr<Callout>& callout, std::uint32_t itemId) {
  const auto combined = du::DynamicCast<CombinedCallout>(callout);
  if (!combined) return {callout};
  std::vector<du::SmartPtr<Callout>> members;
  for (const auto& member : combined->GetCalloutVec()) {
    if (hostlayer::CarriesItem(member, itemId)) members.push_back(member);
  }
  return members;
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

void Callouts::UpdateItemGroupCalloutLeaders(std::uint32_t itemId, const InstanceSet& added, const InstanceSet& removed,
                                             const du::SmartPtr<zrk::Operation>& operation) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  if (generations_ != 0 || (added.empty() && removed.empty()) || hostlayer::IsReplaying(GetScene())) return;
  bool changed = false;
  for (const auto& callout : CopyOfCallouts()) {
    if (!hostlayer::CarriesItem(callout, itemId)) continue;
    for (const auto& target : CalloutsOfItem(callout, itemId)) {
      if (UpdateLeadersOf(target, added, removed, operation)) changed = true;
    }
  }
  if (changed) MarkViewDirty();
}

// One step holds the leaders before and after; the registry is brought back in line with whatever leaders remain.
bool Callouts::UpdateLeadersOf(const du::SmartPtr<Callout>& callout, const InstanceSet& added,
                               const InstanceSet& removed, const du::SmartPtr<zrk::Operation>& operation) {
  const bool drawOne = GetDrawOneForSamePart();
  const bool oneCalloutAnItem = drawOne || GetCombineForSamePart();
  const InstanceSet toAdd = oneCalloutAnItem ? WithoutLeader(*callout, added) : InstanceSet();
  const auto before = UpdateItemGroupLeadersOperationStep::LeadersOf(*callout);
  const auto toRemove = std::count_if(before.begin(), before.end(),
                                      [&](const auto& leader) { return StandsOnAny(*leader.first, removed); });
  if (toAdd.empty() && toRemove == 0) return false;
  if (toAdd.empty() && static_cast<std::size_t>(toRemove) == before.size() && IsRegistered(callout)) {
    if (const auto annoSet = GetAnnoSet()) annoSet->RemoveAnnotationWithDependencies(callout, operation);
    return true;
  }
  RemoveFromMap(callout);
  for (const auto& [leader, hidden] : before) {
    if (StandsOnAny(*leader, removed)) callout->DisconnectLeader(leader);
  }
  const auto scene = du::DynamicCast<zrk::ShapeScene>(GetScene());
  for (const auto& instance : toAdd) {
    LeaderTarget target;
    if (FindLeaderTarget(scene, instance, false, target)) AddLeaderOn(target, drawOne, *callout);
  }
  ShowFirstWhenAllHidden(*callout);
  RequestAnchorPick(callout);
  AddToMap(callout);
  callout->NotifyCalloutChanged();
  if (operation) {
    operation->AddStep(du::SmartPtr<zrk::OperationStep>(new UpdateItemGroupLeadersOperationStep(
        callout, du::SmartPtr<Callouts>(this), before, UpdateItemGroupLeadersOperationStep::LeadersOf(*callout))));
  }
  return true;
}

}  // namespace zrcallouts
