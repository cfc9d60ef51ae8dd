#pragma once
// The operations that a fault meets, each as a host calls it, and what leads up to them.

#include <dlfcn.h>

#include <sstream>

#include <dg/FMat33.h>
#include <dg/Location.h>
#include <du/LocalizableString.h>
#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/CalloutTemplates.h>
#include <zrcallouts/Align.h>
#include <zrcallouts/Align2D.h>
#include <zrcallouts/CalloutsDrawWhenHiddenOperationStep.h>
#include <zrcallouts/Functions.h>
#include <zrk/MakeObject.h>
#include <zrk/Markup.h>
#include <zrk/PickEvent.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration2d/Text2D.h>

#include "faults/FaultStage.h"

namespace zrtest {

using zrannotations::AnnotationEdit;
using zrcallouts::Align;
using zrk::MakeObject;

/// Operations end at the component's interface, so that a fault meets the component and no other part of the host.
class FaultOperations final : public FaultStage {
public:
  // What leads up to the operation.

  void CombineLeaders() { engine_->SetCombineForSamePart(true); }
  void HideLeaders() { engine_->SetDrawOneForSamePart(true); }
  void UsePlainTemplate() { engine_->SetTemplate(TextTemplate(kLongText)); }
  void UsePropertyTemplate() {
    engine_->SetTemplate(
        TemplateBuilder().Literal(kLongText).Property("Manufacturing data of the part", "Mass").Build());
    SetProperty("bolt", "Manufacturing data of the part", "Mass", "17.25 kilograms, dry");
    SetProperty("nut", "Manufacturing data of the part", "Mass", "3");
  }
  void Generate() { RunOn({"bolt", "bolt#2", "nut", "frame", "weld/plate"}); }
  void Join() {
    const auto shown = Shown();
    AnnotationEdit::JoinCallouts(scene_, {shown[0], shown[1], shown[2]}, nullptr);
  }
  void ChangeItemNumbers() {
    const unsigned item = AddItemOf("washer");
    for (const auto& callout : Shown()) callout->SetItemId(item);
  }
  void ShowInset() {
    inset_ = AnnotationEdit::AddInset(scene_, PartOf("bolt").sbom, kLongText, nullptr);
    FirstCallout()->SetInsetAtPos(inset_, 0);
    engine_->AddToMap(FirstCallout());
  }
  void AddSymbol() { symbol_ = AnnotationEdit::AddSymbol(scene_, PartOf("bolt").sbom, nullptr); }
  void HoldPicks() {
    view_->SetPickService(picks_);
    RunOn({"bolt", "bolt#2", "bolt#3"});
    static_cast<void>(picks_->Take());
  }
  void JoinItemInOperation() {
    operation_ = MakeOperation();
    JoinItem();
    step_ = operation_->GetSteps().front();
    undone_ = false;
    operation_.Reset();
  }
  void LookAway() {
    scene_->SetDrawWhenHidden(false);
    LookAlong({-1, 0, 0});
  }
  void PrepareArrival() { arrival_ = MakeCallout(engine_->GetTemplate(), PartOf("washer"), AddItemOf("washer")); }
  void PrepareCombinedArrival() {
    const auto first = MakeCallout(NumberTemplate(), PartOf("washer"), AddItemOf("washer"));
    AddLeader(first, PartOf("bolt"));
    arrival_ = MakeCombined({first, MakeCallout(NumberTemplate(), PartOf("nut"), AddItemOf("nut"))});
  }
  void PrepareInset() {
    inset_ = MakeObject<zrannotations::Inset>();
    arrival_ = inset_;
    FirstCallout()->SetInsetAtPos(inset_, 0);
    inset_->SetInsetCaption(MakeObject<zrk::Markup>());
    inset_->SetCaptionText(du::Symbol(kLongText), false, false);
  }

  // The operation.

  void CreateEngine() {
    static_cast<void>(MakeEngine());  // one that goes again unbound
    if (!made_) made_ = MakeEngine();
    if (!made_) return;
    made_->Initialize(other_);
    made_->InitializeShapeViewObserver();
    const auto items = zritemlist::ItemList::GetItemListForScene(other_)->GetZrkItemList();
    answer_ = "made, observed items " + std::to_string(items->GetObserverCount());
  }
  void GenerateAgain() { RunOn({"bolt", "washer", "weld"}); }
  void GenerateByItem() {
    if (!engine_->GetItemsList()) return;
    std::vector<du::SmartPtr<zrk::illustration::TAnnotation>> templates;
    zrannotations::GetCalloutTemplates(templates, true, false);
    if (templates.empty()) {
      const auto chosen = TemplateBuilder().Literal(kLongText).Token("zrITM").Build();
      chosen->SetId("the template that is chosen");
      zrannotations::AddCalloutTemplate(chosen);
    }
    AddItemOf("washer");
    MakeGenerator()->AddOnItemIds({ItemOf("bolt"), ItemOf("washer")}, "the template that is chosen", nullptr);
  }
  void GenerateByHand() {
    const auto generator = MakeGenerator();
    generator->CreateManuallyOnSelected(Select({"washer", "frame"}), operation_);
    generator->ShowCreatedCallouts(operation_);
  }
  void AddMadeCallouts() {
    du::SmartPtr<zrk::Operation> operation;
    MakeGenerator()->AddCallouts({MakeCallout(NumberTemplate(), PartOf("washer"))}, operation);
  }
  void CallOutSymbols() { MakeGenerator()->AddOnSymbols({symbol_->GetInstance()}); }
  void Arrive() { engine_->OnAddAnnotation(arrival_); }
  void Leave() {
    if (!arrival_) arrival_ = FirstCallout();
    if (scene_->GetAnnoSet()->Contains(arrival_)) Remove(arrival_);
    engine_->OnRemoveAnnotation(arrival_);
  }
  void RegenerateLabels() {
    SetProperty("bolt", "Manufacturing data of the part", "Mass", "nine kilograms without the grease");
    engine_->RegenerateCalloutLabels();
    for (const auto& callout : Shown()) engine_->RegenerateCalloutLabel(callout, true);
  }
  void ChangeTemplate() {
    engine_->GetTemplate()->ReplaceBy(*TemplateBuilder().Literal(kLongText).Token("zrITM").Token("zrQTY").Build());
    for (auto callout : Shown()) {
      engine_->CheckForTypeUpdate(callout);
      engine_->SetCalloutText(callout);
    }
  }
  void ChangeLanguage() {
    const auto callout = FirstCallout();
    callout->SetupLocalizationIfNecessary(true);
    callout->GetLocalizableString().SetLocaleText("de", du::Symbol("ein Text, der nicht an seinen Platz passt"));
    world_->ChangeLanguage("de");
    engine_->OnLanguageChanged();
  }
  void RemoveFromItem() {
    const unsigned item = ItemOf("bolt");
    operation_ = MakeOperation();
    engine_->UpdateItemGroupCalloutLeaders(item, {}, {PartOf("bolt#2").sbom, PartOf("bolt").sbom}, operation_);
    engine_->OnItemContentChanged(item, {}, {PartOf("bolt#2").sbom});
  }
  void JoinItem() {
    const unsigned item = ItemOf("bolt");
    if (!operation_) operation_ = MakeOperation();
    engine_->UpdateItemGroupCalloutLeaders(item, {PartOf("bolt#3").sbom, PartOf("washer").sbom}, {}, operation_);
  }
  void RemoveItem() {
    operation_ = MakeOperation();
    engine_->OnItemRemoved(ItemOf("bolt"), operation_);
    engine_->OnItemRemoved(ItemOf("nut"), operation_);
  }
  void ClearItems() {
    operation_ = MakeOperation();
    engine_->OnListCleared(operation_);
  }
  void RenumberItems() {
    items_->SetItemLabel(ItemOf("bolt"), "a label that is too long to be kept in place");
    items_->SetIndex(ItemOf("bolt"), 7);
    engine_->OnItemContentChanged(ItemOf("bolt"), {}, {});
  }
  void Query() {
    std::ostringstream answer;
    std::vector<CalloutPtr> callouts;
    engine_->GetItemIdCallouts({ItemOf("bolt"), ItemOf("nut"), ItemOf("washer")}, callouts);
    engine_->Sort(callouts);
    for (const auto& callout : callouts) answer << Describe(*callout) << ' ';
    std::set<std::uint32_t> ids;
    engine_->GetItemdIds(ids);
    answer << ids.size() << engine_->GetCalloutsAndInsetsFonts(false).size()
           << engine_->Exists(PartOf("nut").Id(), "2");
    for (const auto& callout : callouts) {
      du::Symbol pattern;
      zrcallouts::Callouts::Contents contents, localized;
      callout->GetDefinition()->GetTextContent(contents);
      engine_->GetTemplateLocalizableString(callout, pattern);
      engine_->LocalizeTemplateText(du::Symbol("a {0} and a text around it that is long"), contents, localized);
      answer << pattern.GetString() << localized.size() << engine_->IsAllowed(callout)
             << engine_->HasTemplateText(callout);
    }
    answer_ = answer.str();
  }
  void MovePart() {
    const auto shape = PartOf("bolt").shape;
    shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(1, 2, 3)));
    engine_->OnShapeInstanceLocation(shape);
  }
  void HidePart() {
    const auto shape = PartOf("frame/beam").shape;
    shape->SetVisible(false);
    engine_->OnShapeInstanceVisibility(shape, false);
    engine_->OnShapeInstanceCreate(PartOf("bolt").shape);
  }
  void RemoveShape() {
    const auto shape = PartOf("bolt").shape;
    if (shape && shape->GetShapeScene()) scene_->RemoveShapeInstance(shape);
    if (shape) engine_->OnShapeInstanceRemove(shape);
  }
  void PlaceAnchors() {
    for (const auto& callout : Shown()) {
      engine_->UpdateLeaderAnchor(callout, callout->GetShapeInstanceAtPos(0));
      engine_->RequestAnchorPick(callout);
    }
  }
  void EvaluateHidden() {
    engine_->OnDrawWhenHidden(view_);
    engine_->OnPaletteColorChanged();
    engine_->OnWindowSize();
  }
  void SwitchDrawWhenHidden() {
    const du::SmartPtr<zrk::OperationStep> step(new zrcallouts::CalloutsDrawWhenHiddenOperationStep(engine_, true));
    const auto operation = MakeOperation();
    operation->AddStep(step);
    operation->Undo();
    operation->Redo();
  }
  void ChangeInset() {
    inset_->SetBounds(dg::DBox({-1, -1, -1}, {1, 1, 1}));
    engine_->OnInsetChanged(inset_);
    engine_->OnAnnotationModified(FirstCallout(), true);
  }
  void DeleteSymbol() {
    engine_->OnAnnotationDeleted(symbol_, nullptr);
    engine_->OnShapeInstanceRemove(scene_->GetShapeInstance(symbol_->GetInstance()));
  }
  void DropPicks() {
    for (const auto& callout : Shown()) {
      engine_->RequestAnchorPick(callout);
      const auto events = picks_->Take();
      for (std::size_t i = 0; i + 1 < events.size(); ++i) AnswerAsSeen(*events[i]);
    }
  }
  void UndoAndRedo() {
    if (!undone_) step_->Undo();
    undone_ = true;  // what failed is done again, and not what went before it
    step_->Redo();
  }
  void AlignLabels() {
    auto labels = Labels();
    const du::SmartPtr<Align> align(new Align(labels, zrcallouts::AlongAxisX, true, view_, MakeOperation()));
    align->Execute({});
  }
  void SpreadLabels() {
    auto labels = Labels();
    const du::SmartPtr<Align> align(new Align(labels, zrcallouts::SpreadY, view_));
    align->Execute({});
  }
  void ArrangeLabels() { zrcallouts::ArrangeLabels(engine_, view_, Shown(), MakeOperation()); }
  void AlignSheet() {
    using zrcallouts::Align2D;
    const du::SmartPtr<Align2D> align(new Align2D(sheetCallouts_, zrcallouts::CenterX, true, sheet_->GetView(0)));
    align->Execute({});
  }
  void CreateOnSheet() {
    const auto made = TemplateBuilder().Literal(kLongText).Token("zrITM").Build();
    const auto callout = zrcallouts::CreateNewCallout2D(sheet_, made, true, {1, 2}, {3, 4}, ItemOf("bolt"));
    answer_ = callout ? callout->GetTextElement()->GetString().GetString() : "none";
  }
  void UpdateSheet() {
    sheetCallouts_[0]->SetPreset(TemplateBuilder().Literal(kLongText).Build());
    zrcallouts::Callouts::UpdateCallout2DContent(sheetCallouts_[0], sheet_);
  }
  void Destroy() {
    scene_->Destroy();
    engine_->Destroy();
    RunTasks();
  }

private:
  [[nodiscard]] static EnginePtr MakeEngine() {
    const auto create =
        reinterpret_cast<zrk::illustration::CalloutEngineMgr::EntryPoint>(dlsym(RTLD_DEFAULT, "ZRDllCreateComponent"));
    du::SmartPtr<du::RefCounted> made;
    EXPECT_TRUE(create("create", "callouts", "calloutengine", made));
    return du::DynamicCast<zrcallouts::Callouts>(made);
  }
  [[nodiscard]] zrcallouts::Align::Annotations Labels() const {
    const auto shown = Shown();
    return {shown.begin(), shown.end()};
  }
  static void AnswerAsSeen(zrk::PickEvent& event) {
    zrk::PickAnswer answer;
    answer.isVisible = true;
    answer.clearance = 1;
    answer.deepest = event.GetShapeInstance()->GetLocation().GetPos();
    event.Answer(answer);
  }
};

}  // namespace zrtest
