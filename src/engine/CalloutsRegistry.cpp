// The registry: which callouts point at an instance, which show an inset, and whose templates are observed.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zritemlist/ItemList.h>

#include "engine/CalloutTemplateObserver.h"
#include "engine/EngineLink.h"
#include "engine/ItemIndex.h"
#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CombinedCallout;

namespace zrcallouts {

namespace {

// The first member is left out: the combined callout's own leaders stand for it.
std::vector<du::SmartPtr<Callout>> FurtherMembers(const du::SmartPtr<Callout>& callout) {
  const auto combined = du::DynamicCast<CombinedCallout>(callout);
  if (!combined || combined->GetCalloutVec().empty()) return {};
  const auto& members = combined->GetCalloutVec();
  return {members.begin() + 1, members.end()};
}

}  // namespace

// An id's set is replaced by an updated copy, never changed in place: whoever took a copy keeps a consistent snapshot.
void Callouts::AddToMap(const du::SmartPtr<Callout>& callout) {
  if (!callout) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  if (IsDestroyed()) return;
  for (const auto& member : FurtherMembers(callout)) AddToMap(member);
  const unsigned leaderCount = callout->GetLeaderLineCount(true);
  for (unsigned leader = 0; leader < leaderCount; ++leader) {
    // The assembly's id is preferred here, the shape's on removal: both orders are part of the registry's contract.
    std::string id = callout->GetAssemblyInstanceIdAtPos(leader);
    if (id.empty()) id = callout->GetShapeInstanceIdAtPos(leader);
    CalloutSet updated;
    if (const auto found = idMap_.find(id); found != idMap_.end()) updated = found->second;
    updated.insert(callout);
    idMap_[id] = std::move(updated);

    const auto inset = callout->GetInsetAtPos(leader);
    const auto entry = inset ? insetTable_.find(inset) : insetTable_.end();
    if (entry == insetTable_.end()) continue;
    CalloutSet shown = entry->second;
    shown.insert(callout);
    entry->second = std::move(shown);
    hostlayer::TellInsetItsCallouts(inset, entry->second);
  }
}

void Callouts::AddToSet(const du::SmartPtr<Callout>& callout) {
  if (!callout) return;
  {
    const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
    if (IsDestroyed()) return;
    callouts_.insert(callout);
    itemIndex_->Insert(callout);
  }
  // Registered with the lock released, so that the host's template machinery is never entered with it held.
  if (callout->IsCustomCallout()) return;
  callout->RegisterTemplateObserver(
      du::SmartPtr<zrk::illustration::CalloutTemplateObserver>(new CalloutTemplateObserver(callout, link_)));
  // Destroy may have come between: then nobody else takes the observer, and with it the callout, apart again.
  if (IsDestroyed()) callout->UnregisterTemplateObserver();
}

void Callouts::RemoveFromMap(const du::SmartPtr<Callout>& callout) {
  if (!callout) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  for (const auto& member : FurtherMembers(callout)) RemoveFromMap(member);
  const unsigned leaderCount = callout->GetLeaderLineCount(true);
  for (unsigned leader = 0; leader < leaderCount; ++leader) _RemoveLeaderFromMap(callout, leader);
}

void Callouts::RemoveLeaderFromMap(const du::SmartPtr<Callout>& callout, unsigned leader) {
  if (!callout) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  if (leader < callout->GetLeaderLineCount(true)) _RemoveLeaderFromMap(callout, leader);
}

void Callouts::_RemoveLeaderFromMap(const du::SmartPtr<Callout>& callout, unsigned leader) {
  std::string id = callout->GetShapeInstanceIdAtPos(leader);
  if (id.empty()) id = callout->GetAssemblyInstanceIdAtPos(leader);
  if (const auto found = idMap_.find(id); found != idMap_.end()) {
    CalloutSet updated = found->second;
    updated.erase(callout);
    if (updated.empty()) {
      idMap_.erase(found);
    } else {
      found->second = std::move(updated);
    }
  }
  const auto inset = callout->GetInsetAtPos(leader);
  if (!inset) return;
  if (const auto entry = insetTable_.find(inset); entry != insetTable_.end()) {
    CalloutSet shown = entry->second;
    shown.erase(callout);
    entry->second = std::move(shown);
  }
}

bool Callouts::Exists(const std::string& id, const std::string& text) const {
  for (const auto& callout : CopyOfCalloutsAt(id)) {
    if (callout->GetText(false).GetString() == text) return true;
  }
  return false;
}

Callouts::CalloutSet Callouts::CopyOfCallouts() const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return callouts_;
}

du::SmartPtr<zritemlist::ItemList> Callouts::HeldItemList() const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return itemList_;
}

Callouts::CalloutSet Callouts::CopyOfCalloutsAt(const std::string& id) const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  const auto found = idMap_.find(id);
  return found == idMap_.end() ? CalloutSet() : found->second;
}

bool Callouts::IsRegistered(const du::SmartPtr<Callout>& callout) const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return callouts_.count(callout) != 0;
}

}  // namespace zrcallouts
