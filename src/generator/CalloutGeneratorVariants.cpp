// Item numbers and the categories of a run.
#include <du/Tracer.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutTemplates.h>
#include <zritemlist/ItemList.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/Operation.h>
#include <zrk/Property.h>
#include <zrk/RecordOperation.h>
#include <zrk/View.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>
#include <zrk/illustration/TAnnotation.h>

#include "engine/OnFailure.h"
#include "generator/CalloutDefinitionOperationStep.h"
#include "generator/ProcessPlanGrouping.h"
#include "hostlayer/HostLayer.h"
#include "leaders/GenerationScope.h"
#include "zrcallouts/CalloutGenerator.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;

namespace zrcallouts {

namespace {

constexpr std::uint32_t kPropertyContent = 1;
constexpr double kReferenceResolution = 96.0;
constexpr int kTraceLevel = 2;

}  // namespace

unsigned CalloutGenerator::AddToItemList(const SbomInstancePtr& instance, bool flag, std::string text,
                                         du::SmartPtr<zrk::Operation>& operation) {
  return itemList_ ? itemList_->AddInstance(instance, operation, flag, text) : 0;
}

void CalloutGenerator::RemoveFromItemList(unsigned itemId, du::SmartPtr<zrk::Operation>& operation) {
  if (itemList_) itemList_->DeleteItem(itemId, operation);
}

void CalloutGenerator::GetItemLabel(unsigned itemId, std::string& label, bool& flag) {
  if (itemList_) itemList_->GetItemLabel(itemId, label, flag);
}

bool CalloutGenerator::GetMatchingItem(const SbomInstancePtr& instance, unsigned& itemId) {
  return itemList_ && itemList_->GetMatchingItem(instance, itemId);
}

void CalloutGenerator::RemoveFromItemIds(const std::vector<unsigned>& itemIds,
                                         const du::SmartPtr<zrk::Operation>& operation) {
  for (const unsigned itemId : itemIds) {
    if (engine_) engine_->OnItemRemoved(itemId, operation);
  }
  if (!itemIds.empty() && view_) view_->SetDirty(true);
}

unsigned CalloutGenerator::ComputeNumberOfVariants(const Selection& selection,
                                                   const du::SmartPtr<zrk::Operation>& operation) {
  if (needsItemList_ && !itemList_) return 0;
  if (needsProperty_) {
    std::vector<du::SmartPtr<zrk::illustration::LabelContent>> contents;
    if (const auto callouttemplate = engine_->GetTemplate()) callouttemplate->GetTextContent(contents);
    for (const auto& content : contents) {
      if (!content || content->type != kPropertyContent) continue;
      propertyGroups_.emplace_back(content->text);
      propertyNames_.emplace_back(content->name);
    }
  }
  for (const auto& item : selection) IncrementNumberOfVariants(RunInstanceOf(item), operation);
  std::size_t count = 0;
  if (plain_) {
    count = plainCategories_.size() + propertyCategories_.size();
  } else if (needsProperty_) {
    count = propertyCategories_.size();
  } else if (needsItemList_) {
    count = itemCategories_.size();
  }
  return static_cast<unsigned>(count);
}

void CalloutGenerator::IncrementNumberOfVariants(const SbomInstancePtr& instance,
                                                 const du::SmartPtr<zrk::Operation>& operation) {
  if (!instance) return;
  std::vector<SbomInstancePtr> children;
  const EngineeringSet engineering = EngineeringInstancesOf(instance, children);
  for (const auto& child : children) IncrementNumberOfVariants(child, operation);
  if (needsProperty_) {
    const auto property = engineering.empty() ? nullptr : CategoryPropertyOf(instance);
    if (property) ++propertyCategories_[hostlayer::ValueOf(property)];
  } else if (plain_) {
    if (engineering.empty()) return;
    if (const du::Symbol key = ProcessPlanKeyOf(instance); !key.IsEmpty()) {
      ++propertyCategories_[key];
    } else if (const auto component = (*engineering.begin())->GetComponentNode()) {
      plainCategories_.insert(component);
    }
  } else if (needsItemList_) {
    CountItems(instance, engineering, operation);
  }
}

// New item numbers are made inside the run's operation and undone with it. An item that is not itemized is no category.
void CalloutGenerator::CountItems(const SbomInstancePtr& instance, const EngineeringSet& engineering,
                                  const du::SmartPtr<zrk::Operation>& operation) {
  const GenerationScope generation(engine_);
  for (const auto& candidate : ItemListCandidates(instance, engineering)) {
    unsigned itemId = 0;
    if (!HasItem(candidate, itemId)) {
      itemCategories_.insert(itemList_->AddInstance(candidate, operation, addToItemList_, std::string()));
    } else if (IsItemized(itemId)) {
      itemCategories_.insert(itemId);
    }
  }
}

void CalloutGenerator::AddOnItemIds(const std::vector<unsigned>& itemIds, const std::string& templateId,
                                    const du::SmartPtr<zrk::Operation>& operation) {
  if (!itemList_ || itemIds.empty() || !engine_) return;
  const auto chosen = ChooseTemplate(templateId);
  needsItemList_ = true;
  itemCategories_.insert(itemIds.begin(), itemIds.end());
  InitCategoryIterators();
  const auto runOperation = operation ? operation : NewOperation();
  const OnFailure takeBack([&] { TakeBack(operation ? du::SmartPtr<zrk::Operation>() : runOperation); });
  const auto items = itemList_->GetZrkItemList();
  for (const unsigned itemId : itemIds) {
    itemCurrent_ = itemCategories_.find(itemId);  // the ids come in the caller's order, not in the container's
    InstanceSet runSet;
    if (items) items->GetInstances(itemId, runSet);
    for (const auto& instance : runSet) {
      du::Tracer::Trace(kTraceLevel, "zrcallouts", "CalloutGenerator",
                        "CalloutGenerator::AddOnItemIds() Insert sBOM instance %s", instance->GetObjectName().c_str());
    }
    AddOnSelectedCategory(runSet);
    NextCategory();
  }
  PerformLayout();
  UpdateDefinitions(itemIds, chosen, runOperation);
  ShowCallouts(created_, runOperation);
  if (!operation && runOperation) zrk::RecordOperation(runOperation);
}

// Without a template of that id the engine keeps its own.
du::SmartPtr<zrk::illustration::TAnnotation> CalloutGenerator::ChooseTemplate(const std::string& templateId) {
  std::vector<du::SmartPtr<zrk::illustration::TAnnotation>> templates;
  zrannotations::GetCalloutTemplates(templates, true, false);
  for (const auto& candidate : templates) {
    if (!candidate || candidate->GetId() != templateId) continue;
    hostlayer::SetReferenceResolution(candidate, kReferenceResolution);
    engine_->SetTemplate(candidate);
    return candidate;
  }
  return {};
}

// Callouts that show one of the items with another template change over to the chosen one, undoably.
void CalloutGenerator::UpdateDefinitions(const std::vector<unsigned>& itemIds,
                                         const du::SmartPtr<zrk::illustration::TAnnotation>& definition,
                                         const du::SmartPtr<zrk::Operation>& operation) {
  if (!definition || !operation) return;
  CalloutVector callouts;
  engine_->GetItemIdCallouts(itemIds, callouts);
  for (const auto& callout : callouts) {
    if (callout->GetDefinition() == definition) continue;
    const du::SmartPtr<zrk::OperationStep> step(new CalloutDefinitionOperationStep(callout, definition, engine_));
    if (!step) continue;
    operation->AddStep(step);
    step->Redo();
  }
}

}  // namespace zrcallouts
