// Whether a generated callout may join: one callout of one item on one part in one inset.
#include <zrannotations/Callout.h>
#include <zrannotations/Inset.h>
#include <zritemlist/ItemList.h>
#include <zrk/illustration/TAnnotation.h>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;

namespace zrcallouts {

namespace {

bool RequiresItemList(const Callout& callout) {
  const auto definition = callout.GetDefinition();
  return definition && definition->RequiresItemList();
}

bool HasLeaderOn(const Callout& callout, const std::string& shapeId, const du::SmartPtr<zrannotations::Inset>& inset) {
  const unsigned leaderCount = callout.GetLeaderLineCount(true);
  for (unsigned leader = 0; leader < leaderCount; ++leader) {
    if (callout.GetShapeInstanceIdAtPos(leader) == shapeId && callout.GetInsetAtPos(leader) == inset) return true;
  }
  return false;
}

// Two different items on one part are allowed; equal items, or a callout without one, are in conflict.
bool ItemsConflict(const du::SmartPtr<Callout>& first, const du::SmartPtr<Callout>& second) {
  const auto firstItem = hostlayer::ItemIdOf(first);
  const auto secondItem = hostlayer::ItemIdOf(second);
  return !firstItem || !secondItem || *firstItem == *secondItem;
}

}  // namespace

bool Callouts::IsAllowed(const du::SmartPtr<Callout>& callout) const {
  if (!callout) return false;
  if (!RequiresItemList(*callout)) return true;
  if (callout->IsKit() || !HeldItemList()) return true;
  const unsigned leaderCount = callout->GetLeaderLineCount(true);
  for (unsigned leader = 0; leader < leaderCount; ++leader) {
    // The shape's id only: a callout filed under an assembly's id is not found here.
    const std::string id = callout->GetShapeInstanceIdAtPos(leader);
    if (id.empty()) continue;
    const auto inset = callout->GetInsetAtPos(leader);
    for (const auto& other : CopyOfCalloutsAt(id)) {
      if (other == callout || other->IsKit() || !RequiresItemList(*other)) continue;
      if (HasLeaderOn(*other, id, inset) && ItemsConflict(callout, other)) return false;
    }
  }
  return true;
}

}  // namespace zrcallouts
