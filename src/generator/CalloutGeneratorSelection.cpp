// Which instances a pass works on. They are sorted by category once a run, so that all passes together cost what the
// selection has instances, and not categories times instances.
#include <zritemlist/ItemList.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/Property.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "generator/PassProgress.h"
#include "generator/ProcessPlanGrouping.h"
#include "hostlayer/HostLayer.h"
#include "zrcallouts/CalloutGenerator.h"

using zrk::illustration::SbomInstance;

namespace zrcallouts {

bool CalloutGenerator::HasItem(const SbomInstancePtr& instance, unsigned& itemId) const {
  const auto items = itemList_ ? itemList_->GetZrkItemList() : nullptr;
  return items && instance && items->GetItemIdForInstance(instance, itemId);
}

bool CalloutGenerator::IsItemized(unsigned itemId) const {
  const auto items = itemList_ ? itemList_->GetZrkItemList() : nullptr;
  return items && items->GetItemized(itemId);
}

// A weld's callout goes to the top weld; a part whose own row is not itemized leaves its callout to an itemized parent.
CalloutGenerator::SbomInstancePtr CalloutGenerator::RunInstanceOf(const SelectionItemPtr& item) {
  const SbomInstancePtr instance = hostlayer::SbomInstanceOf(item);
  if (!instance) return instance;
  const SbomInstancePtr topWeld = hostlayer::IsWeldMember(instance) ? instance->GetTopWeld() : nullptr;
  if (topWeld && topWeld != instance) return topWeld;
  return UseParent(instance) ? instance->GetParent() : instance;
}

bool CalloutGenerator::UseParent(const SbomInstancePtr& instance) {
  unsigned itemId = 0;
  if (!HasItem(instance, itemId) || IsItemized(itemId)) return false;
  unsigned parentItemId = 0;
  return HasItem(instance->GetParent(), parentItemId) && IsItemized(parentItemId);
}

// In item-list mode an assembly stands for itself and passes its children on, those that have an item id.
CalloutGenerator::EngineeringSet CalloutGenerator::EngineeringInstancesOf(
    const SbomInstancePtr& instance, std::vector<SbomInstancePtr>& children) const {
  EngineeringSet engineering;
  if (hostlayer::IsWeld(instance)) {
    instance->GetEbomInstancesForWeld(engineering);
  } else if (instance->HasChildren() && !plain_ && !needsProperty_) {
    unsigned itemId = 0;
    for (const auto& child : instance->GetChildren()) {
      if (HasItem(child, itemId)) children.push_back(child);
    }
  } else if (!hostlayer::IsWeldMember(instance)) {
    if (const auto own = instance->GetEbomInstance()) engineering.insert(own);
  }
  return engineering;
}

CalloutGenerator::InstanceSet CalloutGenerator::ItemListCandidates(const SbomInstancePtr& instance,
                                                                   const EngineeringSet& engineering) const {
  InstanceSet candidates;
  if (!hostlayer::IsWeldMember(instance)) candidates.insert(instance);
  unsigned itemId = 0;
  for (const auto& part : engineering) {
    const auto sbom = part->GetSbomInstance();
    if (sbom && !hostlayer::IsWeldMember(sbom) && HasItem(sbom, itemId)) candidates.insert(sbom);
  }
  return candidates;
}

du::SmartPtr<zrk::Property> CalloutGenerator::CategoryPropertyOf(const SbomInstancePtr& instance) const {
  if (propertyGroups_.empty()) return {};
  return hostlayer::FindProperty(instance, propertyGroups_.front(), propertyNames_.front(), du::Symbol::EMPTY);
}

void CalloutGenerator::CollectCandidates(const SbomInstancePtr& instance, Candidates& candidates) const {
  std::vector<SbomInstancePtr> children;
  const EngineeringSet engineering = EngineeringInstancesOf(instance, children);
  for (const auto& child : children) CollectCandidates(child, candidates);
  if (plain_) {
    if (engineering.empty()) return;
    const auto component = (*engineering.begin())->GetComponentNode();
    candidates.push_back({instance, component.Get(), ProcessPlanKeyOf(instance), 0});
  } else if (needsProperty_) {
    const auto property = engineering.empty() ? nullptr : CategoryPropertyOf(instance);
    if (property) candidates.push_back({instance, nullptr, hostlayer::ValueOf(property), 0});
  } else if (needsItemList_ && itemList_) {
    unsigned itemId = 0;
    for (const auto& candidate : ItemListCandidates(instance, engineering)) {
      if (HasItem(candidate, itemId) && IsItemized(itemId)) {
        candidates.push_back({candidate, nullptr, du::Symbol(), itemId});
      }
    }
  }
}

const CalloutGenerator::Candidates& CalloutGenerator::CandidatesOf(const SbomInstancePtr& instance) {
  const auto [entry, isNew] = candidates_.try_emplace(instance);
  if (isNew) CollectCandidates(instance, entry->second);
  return entry->second;
}

// Parts without a process-plan key belong to no category of the second half of a plain run.
void CalloutGenerator::SortInto(RunSets& runSets, const Candidates& candidates) const {
  for (const Candidate& candidate : candidates) {
    if (plain_) runSets.ofComponent[candidate.component].insert(candidate.instance);
    if (plain_ ? !candidate.text.IsEmpty() : needsProperty_) runSets.ofText[candidate.text].insert(candidate.instance);
    if (!plain_ && !needsProperty_) runSets.ofItem[candidate.itemId].insert(candidate.instance);
  }
}

CalloutGenerator::RunSets CalloutGenerator::RunSetsOf(const Selection& selection) {
  RunSets runSets;
  for (const auto& item : selection) {
    if (const auto instance = RunInstanceOf(item)) SortInto(runSets, CandidatesOf(instance));
  }
  return runSets;
}

// After the components a plain run goes through the process-plan keys.
const CalloutGenerator::InstanceSet& CalloutGenerator::CurrentRunSet(const RunSets& runSets) const {
  const auto find = [&runSets](const auto& sets, const auto& key) -> const InstanceSet& {
    const auto found = sets.find(key);
    return found == sets.end() ? runSets.none : found->second;
  };
  if (plain_ && plainCurrent_ != plainCategories_.end()) return find(runSets.ofComponent, plainCurrent_->Get());
  if (plain_ || needsProperty_) {
    return propertyCurrent_ == propertyCategories_.end() ? runSets.none : find(runSets.ofText, propertyCurrent_->first);
  }
  return needsItemList_ && itemCurrent_ != itemCategories_.end() ? find(runSets.ofItem, *itemCurrent_) : runSets.none;
}

void CalloutGenerator::AddSbomInstanceToRun(const SbomInstancePtr& instance, InstanceSet& runSet) {
  if (!instance) return;
  RunSets runSets;
  SortInto(runSets, CandidatesOf(instance));
  const InstanceSet& current = CurrentRunSet(runSets);
  runSet.insert(current.begin(), current.end());
}

}  // namespace zrcallouts
