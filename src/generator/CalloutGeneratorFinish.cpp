// Finishing: registration with the engine, showing in the scene, and the entries that finish callouts made elsewhere.
#include <utility>

#include <dg/DPoint3D.h>
#include <du/LocalizableString.h>
#include <du/Tracer.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/Instance.h>
#include <zrk/Operation.h>
#include <zrk/OperationStep.h>
#include <zrk/RecordOperation.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/View.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>
#include <zrk/illustration/TAnnotation.h>

#include "engine/OnFailure.h"
#include "generator/AnnotationVisitor.h"
#include "generator/PassProgress.h"
#include "hostlayer/HostLayer.h"
#include "leaders/GenerationScope.h"
#include "zrcallouts/CalloutGenerator.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;

namespace zrcallouts {

namespace {

constexpr int kTraceLevel = 2;

void VisitAnnotations(const du::SmartPtr<zrk::ShapeScene>& scene, AnnotationVisitor& visitor) {
  const auto annoSet = scene ? scene->GetAnnoSet() : nullptr;
  if (annoSet) annoSet->Visit(visitor);
}

void LocalizeLabel(const du::SmartPtr<Callout>& callout, const Callouts& engine, bool notes) {
  const auto definition = callout->GetDefinition();
  if (!hostlayer::IsLabelLocalizable(callout) || !definition || definition->RequiresPropertyVisitor()) return;
  callout->SetupLocalizationIfNecessary(notes);
  du::Symbol pattern;
  if (engine.GetTemplateLocalizableString(callout, pattern)) callout->GetLocalizableString().SetSourceText(pattern);
}

}  // namespace

// A callout that the engine does not allow is dropped in silence.
void CalloutGenerator::FinalizeCallouts(const CalloutVector& callouts) {
  if (!engine_) return;
  for (const auto& callout : callouts) {
    if (!engine_->IsAllowed(callout)) continue;
    created_.insert(callout);
    if (engine_->HasTemplateText(callout)) {
      engine_->SetCalloutText(callout);
    } else {
      engine_->SetPredefinedText(callout);
    }
    engine_->AddToMap(callout);
    engine_->AddToSet(callout);
    engine_->RequestAnchorPick(callout);
  }
}

// Each part by itself: what one of them lacks the memory for must not keep the others.
void CalloutGenerator::TakeBack(const du::SmartPtr<zrk::Operation>& ownOperation) {
  const auto attempt = [](const auto& act) {
    try {
      act();
    } catch (...) {  // the exception under way tells of the failure already
    }
  };
  const auto annoSet = scene_ ? scene_->GetAnnoSet() : nullptr;
  for (const auto& callout : created_) {
    if (annoSet) attempt([&] { annoSet->RemoveAnnotationFromSet(callout, du::SmartPtr<zrk::Operation>()); });
    if (engine_) attempt([&] { engine_->Unregister(callout); });
  }
  created_.clear();
  if (!ownOperation) return;
  const auto steps = ownOperation->GetSteps();
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) attempt([&] { (*step)->Undo(); });
}

void CalloutGenerator::ShowCreatedCallouts(const du::SmartPtr<zrk::Operation>& operation) {
  ShowCallouts(created_, operation);
}

void CalloutGenerator::ShowCallouts(const CalloutSet& callouts, const du::SmartPtr<zrk::Operation>& operation) {
  CalloutVector shown;
  for (const auto& callout : callouts) {
    if (callout) shown.push_back(callout);
  }
  if (!shown.empty()) ShowCallouts(shown, operation);
}

void CalloutGenerator::ShowCallouts(const CalloutVector& callouts, const du::SmartPtr<zrk::Operation>& operation) {
  const auto annoSet = scene_ ? scene_->GetAnnoSet() : nullptr;
  if (!annoSet) return;
  const bool notes = hostlayer::NotesAreLocalized();
  bool added = false;
  int count = -1;
  for (const auto& callout : callouts) {
    ++count;
    if (!callout) continue;
    if (callout->IsInitialized()) {
      du::Tracer::Trace(kTraceLevel, "zrcallouts", "CalloutGenerator", "AddAnnotationToSet for callout %d", count);
      annoSet->AddAnnotationToSet(callout, operation);
      added = true;
    }
    if (engine_) LocalizeLabel(callout, *engine_, notes);
  }
  if (added && view_) view_->SetDirty(true);
}

// Every given callout is shown, also one that the registration dropped: showing has no admission test.
void CalloutGenerator::AddCallouts(const CalloutVector& callouts, du::SmartPtr<zrk::Operation>& operation) {
  const bool ownsOperation = !operation;
  if (ownsOperation) operation = NewOperation();
  const OnFailure takeBack(
      [&] { TakeBack(ownsOperation ? std::exchange(operation, {}) : du::SmartPtr<zrk::Operation>()); });
  AnnotationVisitor symbols;
  VisitAnnotations(scene_, symbols);
  for (const auto& callout : callouts) {
    if (!callout) continue;
    AssignSymbolId(callout, symbols);
    AssignItemNumber(callout, operation);
  }
  FinalizeCallouts(callouts);
  ShowCallouts(callouts, operation);
  if (ownsOperation && operation) zrk::RecordOperation(operation);
}

void CalloutGenerator::AssignSymbolId(const du::SmartPtr<Callout>& callout, const AnnotationVisitor& symbols) const {
  const auto shape = callout->GetShapeInstanceAtPos(0);
  const auto instance = shape ? shape->GetInstance() : nullptr;
  if (instance && instance->Is3dSymbol()) callout->SetSymbolIdAtPos(symbols.SymbolIdOf(instance), 0);
}

void CalloutGenerator::AssignItemNumber(const du::SmartPtr<Callout>& callout,
                                        const du::SmartPtr<zrk::Operation>& operation) {
  const auto definition = callout->GetDefinition();
  if (!definition || !definition->RequiresItemList() || !engine_ || !engine_->IsAllowed(callout)) return;
  const auto instance = callout->GetSbomInstanceAtPos(0);
  unsigned itemId = 0;
  if (!instance || !itemList_) return;
  const GenerationScope generation(engine_);
  if (!HasItem(instance, itemId)) {
    callout->SetItemId(itemList_->AddInstance(instance, operation, false, std::string()));
  } else if (IsItemized(itemId)) {
    callout->SetItemId(itemId);
  }
}

void CalloutGenerator::CreateManuallyOnSelected(const Selection& selection, du::SmartPtr<zrk::Operation>& operation) {
  if (!engine_) return;
  const bool ownsOperation = !operation;
  if (ownsOperation) operation = NewOperation();
  const OnFailure takeBack(
      [&] { TakeBack(ownsOperation ? std::exchange(operation, {}) : du::SmartPtr<zrk::Operation>()); });
  addToItemList_ = true;
  if (!InitializeByItem(selection, operation)) return;
  ForEachPass(selection, PassProgress(), [this](const InstanceSet& runSet) {
    CalloutVector made;
    AddOnSelectedCategory(runSet, made);
    // Nothing is registered here, so two callouts of one pass on one part do not see each other.
    for (const auto& callout : made) {
      if (!engine_->IsAllowed(callout)) continue;
      engine_->RequestAnchorPick(callout);
      created_.insert(callout);
    }
    return true;
  });
  PerformLayout();
}

// The run sets are built and dropped again: what lasts is that every selected part has an item number afterwards.
void CalloutGenerator::AddOnCopySteps(const Selection& selection, du::SmartPtr<Callout>& /*callout*/,
                                      const du::SmartPtr<zrk::Operation>& operation) {
  if (!engine_ || !InitializeByItem(selection, operation)) return;
  ForEachPass(selection, PassProgress(), [](const InstanceSet&) { return true; });
}

// A run by item number, whatever the template asks for; false when the selection yields no item.
bool CalloutGenerator::InitializeByItem(const Selection& selection, const du::SmartPtr<zrk::Operation>& operation) {
  needsItemList_ = true;
  variantsCount_ = ComputeNumberOfVariants(selection, operation);
  InitCategoryIterators();
  return variantsCount_ != 0;
}

void CalloutGenerator::AddOnSymbols(const std::vector<du::SmartPtr<zrk::Instance>>& instances) {
  const auto scene = du::DynamicCast<zrk::ShapeScene>(scene_);
  if (instances.empty() || !scene || !engine_) return;
  const CalloutVector callouts = MakeSymbolCallouts(instances, scene);
  const auto operation = NewOperation();
  const OnFailure takeBack([&] { TakeBack(operation); });
  FinalizeCallouts(callouts);
  PerformLayout();
  ShowCallouts(callouts, operation);
  if (operation) zrk::RecordOperation(operation);
}

// Symbols of one shape share a callout when either setting is on; otherwise each has its own.
CalloutGenerator::CalloutVector CalloutGenerator::MakeSymbolCallouts(
    const std::vector<du::SmartPtr<zrk::Instance>>& instances, const du::SmartPtr<zrk::ShapeScene>& scene) const {
  const bool drawOne = engine_->GetDrawOneForSamePart();
  const bool shared = drawOne || engine_->GetCombineForSamePart();
  AnnotationVisitor symbols;
  VisitAnnotations(scene, symbols);
  CalloutVector callouts;
  std::map<du::SmartPtr<zrk::Shape>, du::SmartPtr<Callout>> calloutOfShape;
  for (const auto& instance : instances) {
    const auto shapeInstance = instance ? scene->GetShapeInstance(instance) : nullptr;
    if (!shapeInstance) continue;
    auto& first = calloutOfShape[shapeInstance->GetShape()];
    if (first && shared) {
      dg::DPoint3D point = dg::DPoint3D::ORIGIN;
      first->CalculateAnchor(shapeInstance, point);
      const auto leader = first->CreateCalloutLeader(point, shapeInstance);
      if (!leader) continue;
      if (drawOne) leader->SetHidden(true);
      first->ConnectLeader(leader);
      first->SetSymbolIdAtPos(symbols.SymbolIdOf(instance), first->GetLeaderLineCount(true) - 1);
      continue;
    }
    du::SmartPtr<Callout> callout(new Callout);
    if (!callout) continue;
    callout->Initialize(engine_->GetTemplate(), shapeInstance);
    callout->SetSymbolIdAtPos(symbols.SymbolIdOf(instance), 0);
    if (!first) first = callout;
    callouts.push_back(callout);
  }
  return callouts;
}

}  // namespace zrcallouts
