// The registry: which callouts point at an instance, which show an inset, and whose templates are observed.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zritemlist/ItemList.h>

#include "engine/CalloutTemplateObserver.h"
#include "engine/EngineLink.h"
#include "engine/ItemIndex.h"
#include "engine/OnFailure.h"
#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CombinedCallout;

namespace zrcallouts {

namespace {

// The first member is left out: the combined callout's own leaders stand for it.
template <class Visitor>
void ForEachFurtherMember(const du::SmartPtr<Callout>& callout, const Visitor& visit) {
  const auto combined = du::DynamicCast<CombinedCallout>(callout);
  if (!combined) return;
  const auto& members = combined->GetCalloutVec();
  for (std::size_t i = 1; i < members.size(); ++i) visit(members[i]);
}

}  // namespace

// Readers have copies of their own, so an id's set takes the callout in place; when memory runs out, map and set stay
// as they were.
void Callouts::AddToMap(const du::SmartPtr<Callout>& callout) {
  if (!callout) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  if (IsDestroyed()) return;
  ForEachFurtherMember(callout, [this](const auto& member) { AddToMap(member); });
  const unsigned leaderCount = callout->GetLeaderLineCount(true);
  for (unsigned leader = 0; leader < leaderCount; ++leader) {
    // The assembly's id is preferred here, the shape's on removal: both orders are part of the registry's contract.
    std::string id = callout->GetAssemblyInstanceIdAtPos(leader);
    if (id.empty()) id = callout->GetShapeInstanceIdAtPos(leader);
    const auto place = idMap_.lower_bound(id);
    if (place != idMap_.end() && place->first == id) {
      place->second.insert(callout);
    } else {
      idMap_.emplace_hint(place, std::move(id), CalloutSet{callout});
    }

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
  du::SmartPtr<zrk::illustration::CalloutTemplateObserver> observer;
  if (!callout->IsCustomCallout()) observer = new CalloutTemplateObserver(callout, link_);
  {
    const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
    if (IsDestroyed()) return;
    const OnFailure leave([&] { itemIndex_->Erase(callout); });
    itemIndex_->Insert(callout);
    callouts_.insert(callout);
  }
  // Registered with the lock released, so that the host's template machinery is never entered with it held.
  if (!observer) return;
  callout->RegisterTemplateObserver(observer);
  // Destroy may have come between: then nobody else takes the observer, and with it the callout, apart again.
  if (IsDestroyed()) callout->UnregisterTemplateObserver();
}

void Callouts::RemoveFromMap(const du::SmartPtr<Callout>& callout) {
  if (!callout) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  ForEachFurtherMember(callout, [this](const auto& member) { RemoveFromMap(member); });
  const unsigned leaderCount = callout->GetLeaderLineCount(true);
  for (unsigned leader = 0; leader < leaderCount; ++leader) _RemoveLeaderFromMap(callout, leader);
}

void Callouts::RemoveLeaderFromMap(const du::SmartPtr<Callout>& callout, unsigned leader) {
  if (!callout) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  if (leader < callout->GetLeaderLineCount(true)) _RemoveLeaderFromMap(callout, leader);
}

// Needs no memory, since removals must not fail: what was taken out of the scene is not reported again. Readers have
// copies of their own.
void Callouts::_RemoveLeaderFromMap(const du::SmartPtr<Callout>& callout, unsigned leader) {
  std::string id = callout->GetShapeInstanceIdAtPos(leader);
  if (id.empty()) id = callout->GetAssemblyInstanceIdAtPos(leader);
  if (const auto found = idMap_.find(id); found != idMap_.end()) {
    found->second.erase(callout);
    if (found->second.empty()) idMap_.erase(found);
  }
  const auto inset = callout->GetInsetAtPos(leader);
  if (!inset) return;
  if (const auto entry = insetTable_.find(inset); entry != insetTable_.end()) entry->second.erase(callout);
}

void Callouts::Unregister(const du::SmartPtr<Callout>& callout) {
  if (!callout) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  callout->UnregisterTemplateObserver();
  callouts_.erase(callout);
  itemIndex_->Erase(callout);
  RemoveFromMap(callout);
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
