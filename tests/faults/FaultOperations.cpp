// The operations that a fault meets, each as a host calls it.
#include "faults/FaultStage.h"

#include <dlfcn.h>

#include <sstream>

#include <dg/FMat33.h>
#include <dg/Location.h>
#include <du/LocalizableString.h>
#include <du/TaskPool.h>
#include <zrannotations/CalloutTemplates.h>
#include <zrcallouts/Align.h>
#include <zrcallouts/Align2D.h>
#include <zrcallouts/CalloutsDrawWhenHiddenOperationStep.h>
#include <zrcallouts/Functions.h>
#include <zrk/MakeObject.h>
#include <zrk/OperationStep.h>
#include <zrk/PickEvent.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration2d/Text2D.h>
#include <zrk/illustration2d/View2D.h>

using zrcallouts::CalloutGenerator;
using zrk::MakeObject;
using zrk::illustration::CalloutEngineMgr;
using zrk::illustration2d::Callout2D;

namespace zrtest {

namespace {

zrk::PickAnswer SeenAnswer(const zrk::ShapeInstance& shape) {
  zrk::PickAnswer answer;
  answer.isVisible = true;
  answer.clearance = 1;
  answer.deepest = shape.GetLocation().GetPos();
  return answer;
}

EnginePtr MakeEngine() {
  const auto create = reinterpret_cast<CalloutEngineMgr::EntryPoint>(dlsym(RTLD_DEFAULT, "ZRDllCreateComponent"));
  du::SmartPtr<du::RefCounted> made;
  EXPECT_TRUE(create("create", "callouts", "calloutengine", made));
  return du::DynamicCast<zrcallouts::Callouts>(made);
}

}  // namespace

void FaultStage::CreateEngine() {
  static_cast<void>(MakeEngine());  // one that goes again unbound
  if (!made_) made_ = MakeEngine();
  if (!made_) return;
  made_->Initialize(other_);
  made_->InitializeShapeViewObserver();
  const auto items = zritemlist::ItemList::GetItemListForScene(other_)->GetZrkItemList();
  answer_ = "made, observed items " + std::to_string(items->GetObserverCount());
}

void FaultStage::RunOn(const Names& names) {
  const auto event = MakeObject<zrk::AsyncEvent>();
  auto selection = Select(names);
  const std::size_t failedBefore = world_->GetTaskPool()->GetFailedCount();
  CalloutGenerator::CreateCallouts(engine_, std::move(selection), event);
  RunTasks();
  EXPECT_EQ(event->GetCompleteCount(), 1u);
  if (world_->GetTaskPool()->GetFailedCount() != failedBefore) throw std::bad_alloc();  // what ended the task
}

void FaultStage::GenerateAgain() {
  RunOn({"bolt", "washer", "weld"});
}

void FaultStage::GenerateByItem() {
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

void FaultStage::GenerateByHand() {
  const auto generator = MakeGenerator();
  generator->CreateManuallyOnSelected(Select({"washer", "frame"}), operation_);
  generator->ShowCreatedCallouts(operation_);
}

void FaultStage::AddMadeCallouts() {
  du::SmartPtr<zrk::Operation> operation;
  MakeGenerator()->AddCallouts({MakeCallout(NumberTemplate(), PartOf("washer"))}, operation);
}

void FaultStage::CallOutSymbols() {
  MakeGenerator()->AddOnSymbols({symbol_->GetInstance()});
}

void FaultStage::Leave() {
  if (!arrival_) arrival_ = FirstCallout();
  if (scene_->GetAnnoSet()->Contains(arrival_)) Remove(arrival_);
  engine_->OnRemoveAnnotation(arrival_);
}

void FaultStage::RegenerateLabels() {
  SetProperty("bolt", "Manufacturing data of the part", "Mass", "nine kilograms without the grease");
  engine_->RegenerateCalloutLabels();
  for (const auto& callout : Shown()) engine_->RegenerateCalloutLabel(callout, true);
}

void FaultStage::ChangeTemplate() {
  engine_->GetTemplate()->ReplaceBy(*TemplateBuilder().Literal(kLongText).Token("zrITM").Token("zrQTY").Build());
  for (auto callout : Shown()) {
    engine_->CheckForTypeUpdate(callout);
    engine_->SetCalloutText(callout);
  }
}

void FaultStage::ChangeLanguage() {
  const auto callout = FirstCallout();
  callout->SetupLocalizationIfNecessary(true);
  callout->GetLocalizableString().SetLocaleText("de", du::Symbol("ein Text, der nicht an seinen Platz passt"));
  world_->ChangeLanguage("de");
  engine_->OnLanguageChanged();
}

unsigned FaultStage::ItemOf(const std::string& name) const {
  unsigned item = 0;
  items_->GetItemIdForInstance(PartOf(name).sbom, item);
  return item;
}

CalloutPtr FaultStage::FirstCallout() const {
  const auto shown = Shown();
  return shown.empty() ? nullptr : shown.front();
}

void FaultStage::RemoveFromItem() {
  const unsigned item = ItemOf("bolt");
  operation_ = MakeOperation();
  engine_->UpdateItemGroupCalloutLeaders(item, {}, {PartOf("bolt#2").sbom, PartOf("bolt").sbom}, operation_);
  engine_->OnItemContentChanged(item, {}, {PartOf("bolt#2").sbom});
}

void FaultStage::JoinItem() {
  const unsigned item = ItemOf("bolt");
  if (!operation_) operation_ = MakeOperation();
  engine_->UpdateItemGroupCalloutLeaders(item, {PartOf("bolt#3").sbom, PartOf("washer").sbom}, {}, operation_);
}

void FaultStage::RemoveItem() {
  operation_ = MakeOperation();
  engine_->OnItemRemoved(ItemOf("bolt"), operation_);
  engine_->OnItemRemoved(ItemOf("nut"), operation_);
}

void FaultStage::ClearItems() {
  operation_ = MakeOperation();
  engine_->OnListCleared(operation_);
}

void FaultStage::RenumberItems() {
  items_->SetItemLabel(ItemOf("bolt"), "a label that is too long to be kept in place");
  items_->SetIndex(ItemOf("bolt"), 7);
  engine_->OnItemContentChanged(ItemOf("bolt"), {}, {});
}

void FaultStage::Query() {
  std::ostringstream answer;
  std::vector<CalloutPtr> callouts;
  engine_->GetItemIdCallouts({ItemOf("bolt"), ItemOf("nut"), ItemOf("washer")}, callouts);
  engine_->Sort(callouts);
  for (const auto& callout : callouts) answer << Describe(*callout) << ' ';
  std::set<std::uint32_t> ids;
  engine_->GetItemdIds(ids);
  answer << ids.size() << engine_->GetCalloutsAndInsetsFonts(false).size() << engine_->Exists(PartOf("nut").Id(), "2");
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

void FaultStage::MovePart() {
  const auto shape = PartOf("bolt").shape;
  shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(1, 2, 3)));
  engine_->OnShapeInstanceLocation(shape);
}

void FaultStage::HidePart() {
  const auto shape = PartOf("frame/beam").shape;
  shape->SetVisible(false);
  engine_->OnShapeInstanceVisibility(shape, false);
  engine_->OnShapeInstanceCreate(PartOf("bolt").shape);
}

void FaultStage::RemoveShape() {
  const auto shape = PartOf("bolt").shape;
  if (shape && shape->GetShapeScene()) scene_->RemoveShapeInstance(shape);
  if (shape) engine_->OnShapeInstanceRemove(shape);
}

void FaultStage::PlaceAnchors() {
  for (const auto& callout : Shown()) {
    engine_->UpdateLeaderAnchor(callout, callout->GetShapeInstanceAtPos(0));
    engine_->RequestAnchorPick(callout);
  }
}

void FaultStage::EvaluateHidden() {
  engine_->OnDrawWhenHidden(view_);
  engine_->OnPaletteColorChanged();
  engine_->OnWindowSize();
}

void FaultStage::SwitchDrawWhenHidden() {
  const du::SmartPtr<zrk::OperationStep> step(new zrcallouts::CalloutsDrawWhenHiddenOperationStep(engine_, true));
  const auto operation = MakeOperation();
  operation->AddStep(step);
  operation->Undo();
  operation->Redo();
}

void FaultStage::ChangeInset() {
  inset_->SetBounds(dg::DBox({-1, -1, -1}, {1, 1, 1}));
  engine_->OnInsetChanged(inset_);
  engine_->OnAnnotationModified(FirstCallout(), true);
}

void FaultStage::DeleteSymbol() {
  engine_->OnAnnotationDeleted(symbol_, nullptr);
  engine_->OnShapeInstanceRemove(scene_->GetShapeInstance(symbol_->GetInstance()));
}

void FaultStage::DropPicks() {
  for (const auto& callout : Shown()) {
    engine_->RequestAnchorPick(callout);
    const auto events = picks_->Take();
    for (std::size_t i = 0; i + 1 < events.size(); ++i) {
      events[i]->Answer(SeenAnswer(*events[i]->GetShapeInstance()));
    }
  }
}

void FaultStage::UndoAndRedo() {
  if (!undone_) step_->Undo();
  undone_ = true;  // what failed is done again, and not what went before it
  step_->Redo();
}

void FaultStage::AlignLabels() {
  const auto shown = Shown();
  zrcallouts::Align::Annotations annotations(shown.begin(), shown.end());
  const auto operation = MakeOperation();
  const auto align = du::SmartPtr<zrcallouts::Align>(
      new zrcallouts::Align(annotations, zrcallouts::AlongAxisX, true, view_, operation));
  align->Execute({});
}

void FaultStage::SpreadLabels() {
  const auto shown = Shown();
  zrcallouts::Align::Annotations annotations(shown.begin(), shown.end());
  const du::SmartPtr<zrcallouts::Align> align(new zrcallouts::Align(annotations, zrcallouts::SpreadY, view_));
  align->Execute({});
}

void FaultStage::ArrangeLabels() {
  const auto shown = Shown();
  zrcallouts::ArrangeLabels(engine_, view_, {shown.begin(), shown.end()}, MakeOperation());
}

void FaultStage::AlignSheet() {
  const du::SmartPtr<zrcallouts::Align2D> align(
      new zrcallouts::Align2D(sheetCallouts_, zrcallouts::CenterX, true, sheet_->GetView(0)));
  align->Execute({});
}

void FaultStage::CreateOnSheet() {
  const auto made = TemplateBuilder().Literal(kLongText).Token("zrITM").Build();
  const auto callout = zrcallouts::CreateNewCallout2D(sheet_, made, true, {1, 2}, {3, 4}, ItemOf("bolt"));
  answer_ = callout ? callout->GetTextElement()->GetString().GetString() : "none";
}

void FaultStage::UpdateSheet() {
  sheetCallouts_[0]->SetPreset(TemplateBuilder().Literal(kLongText).Build());
  zrcallouts::Callouts::UpdateCallout2DContent(sheetCallouts_[0], sheet_);
}

void FaultStage::Destroy() {
  scene_->Destroy();
  engine_->Destroy();
  RunTasks();
}

}  // namespace zrtest
