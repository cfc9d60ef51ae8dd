// Callouts follow the figure's item list; queries from items and instances to callouts.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/Operation.h>
#include <zrk/illustration/SbomInstance.h>

#include "engine/ItemIndex.h"
#include "engine/OnFailure.h"
#include "engine/Refiling.h"
#include "hostlayer/HostLayer.h"
#include "leaders/UpdateItemGroupLeadersOperationStep.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CombinedCallout;

namespace zrcallouts {

void Callouts::OnItemContentChanged(std::uint32_t itemId,
                                    std::set<du::SmartPtr<zrk::illustration::SbomInstance>> /*added*/,
                                    std::set<du::SmartPtr<zrk::illustration::SbomInstance>> /*removed*/) {
  if (!HeldItemList()) return;
  for (const auto& callout : CopyOfCarriers(itemId)) SetCalloutText(callout);
}

// Each removal comes back as OnRemoveAnnotation on this thread and erases from the set walked here: hence the copies,
// and the test whether a callout of the copy is still registered when its turn comes.
void Callouts::OnItemRemoved(std::uint32_t itemId, const du::SmartPtr<zrk::Operation>& operation) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  const auto annoSet = GetAnnoSet();
  if (!annoSet) return;
  std::vector<du::SmartPtr<CombinedCallout>> singles;
  for (const auto& callout : CopyOfCarriers(itemId)) {
    if (!hostlayer::CarriesItem(callout, itemId) || !IsRegistered(callout)) continue;
    const auto combined = du::DynamicCast<CombinedCallout>(callout);
    if (!combined) {
      annoSet->RemoveAnnotationWithDependencies(callout, operation);
      continue;
    }
    const du::SmartPtr<UpdateItemGroupLeadersOperationStep> step(
        new UpdateItemGroupLeadersOperationStep(combined, du::SmartPtr<Callouts>(this)));
    if (operation) operation->AddStep(step);
    {
      Refiling refiling(*this, combined);
      const OnFailure putBack([&] {
        if (step) step->PutBack();
      });
      while (combined->RemoveItemId(itemId) && hostlayer::CarriesItem(combined, itemId)) {
      }
      SetCalloutText(combined);
      refiling.Finish();
    }
    if (combined->GetCount() < 2) singles.push_back(combined);
  }
  // Referenced annotations are taken in first, so that their removal is an ordinary one that undo can reverse.
  for (const auto& annotation : annoSet->GetReferencedAnnotations()) {
    const auto callout = du::DynamicCast<Callout>(annotation);
    if (!hostlayer::CarriesItem(callout, itemId)) continue;
    annoSet->AddAnnotationToSet(callout, du::SmartPtr<zrk::Operation>());
    annoSet->RemoveAnnotationWithDependencies(callout, operation);
    annoSet->RemoveReferencedAnnotation(callout);
  }
  // In the operation too, so that undo brings the combined callout back along with its item.
  for (const auto& combined : singles) annoSet->RemoveAnnotationFromSet(combined, operation);
}

void Callouts::OnListCleared(const du::SmartPtr<zrk::Operation>& operation) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  const auto annoSet = GetAnnoSet();
  if (!annoSet) return;
  bool removed = false;
  for (const auto& callout : CopyOfCallouts()) {
    if (!hostlayer::CarriesAnyItem(callout)) continue;
    annoSet->RemoveAnnotationWithDependencies(callout, operation);
    removed = true;
  }
  if (removed) MarkViewDirty();
}

void Callouts::GetItemIdCallouts(const std::vector<std::uint32_t>& itemIds,
                                 std::vector<du::SmartPtr<Callout>>& callouts) const {
  for (const std::uint32_t itemId : itemIds) GetItemIdCallouts(itemId, callouts);
}

void Callouts::GetItemIdCallouts(std::uint32_t itemId, std::vector<du::SmartPtr<Callout>>& callouts) const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  itemIndex_->Find(itemId, callouts);
}

std::vector<du::SmartPtr<Callout>> Callouts::CopyOfCarriers(std::uint32_t itemId) const {
  std::vector<du::SmartPtr<Callout>> callouts;
  GetItemIdCallouts(itemId, callouts);
  return callouts;
}

bool Callouts::HasCarrier(std::uint32_t itemId) const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return itemIndex_->Contains(itemId);
}

void Callouts::GetItemdIds(std::set<std::uint32_t>& itemIds) const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  for (const auto& callout : callouts_) {
    if (!hostlayer::CarriesAnyItem(callout)) continue;
    if (const auto itemId = hostlayer::ItemIdOf(callout)) itemIds.insert(*itemId);
  }
}

void Callouts::GetCalloutSetForSbomInstance(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                            CalloutSet& callouts) {
  callouts.clear();
  if (!instance) return;
  callouts = CopyOfCalloutsAt(hostlayer::IdOf(instance));
}

}  // namespace zrcallouts
