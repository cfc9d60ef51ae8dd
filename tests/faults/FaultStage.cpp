#include "faults/FaultStage.h"

#include <future>
#include <iostream>
#include <sstream>
#include <thread>

#include <dg/Camera3D.h>
#include <dg/Location.h>
#include <dp/ReadWriteLock.h>
#include <du/TaskPool.h>
#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration2d/Text2D.h>
#include <zrk/illustration2d/View2D.h>

using zrk::MakeObject;
using zrk::illustration2d::Callout2D;

namespace zrtest {

namespace {

constexpr std::chrono::seconds kDeadline{20};

std::string Text(const dg::DPoint3D& point) {
  std::ostringstream text;
  text << point.x << ',' << point.y << ',' << point.z;
  return text.str();
}

}  // namespace

FaultStage::FaultStage()
    : GeneratorFixture(SceneOptions{.authoring = true}),
      other_(AddScene(false)),
      sheet_(MakeObject<zrk::illustration2d::Scene2D>()) {
  view_->SetWindowSize(1600, 1200);
  LookAlong({-1, -2, -3});
  structure_->AddPart(structure_->Root(), "bolt", {0, 0, 9});
  zritemlist::ItemList::ShareItemList(scene_, sheet_);
  static_cast<void>(zritemlist::ItemList::CreateItemListForScene(other_));
  other_->SetSbomTree(tree_);
  sheet_->AddView(MakeObject<zrk::illustration2d::View2D>());
  for (int i = 0; i < 3; ++i) {
    sheetCallouts_.push_back(MakeObject<Callout2D>());
    sheetCallouts_.back()->SetPosition({10.0 * i, 7.0 * i * i});
    sheetCallouts_.back()->SetTextElement(MakeObject<zrk::illustration2d::Text2D>(du::Symbol("old")));
  }
}

FaultStage::~FaultStage() {
  if (made_) made_->Destroy();
  sheet_->Destroy();
}

void FaultStage::LookAlong(const dg::DVec3& direction) {
  dg::Camera3D camera;
  camera.SetParallel({0, 0, 0}, direction, {0, 1, 0}, 10, 1600, 1200);
  view_->SetCamera(camera);
}

void FaultStage::RunOn(const Names& names) {
  const auto event = MakeObject<zrk::AsyncEvent>();
  auto selection = Select(names);
  const std::size_t failedBefore = world_->GetTaskPool()->GetFailedCount();
  zrcallouts::CalloutGenerator::CreateCallouts(engine_, std::move(selection), event);
  RunTasks();
  EXPECT_EQ(event->GetCompleteCount(), 1u);
  if (world_->GetTaskPool()->GetFailedCount() != failedBefore) throw std::bad_alloc();  // what ended the task
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

std::string FaultStage::StateOf(const zrannotations::Callout& callout) {
  std::ostringstream state;
  state << Describe(callout) << " at " << Text(callout.GetLabelLocation().GetPos()) << callout.HasTemplateObserver();
  for (const auto& leader : callout.GetLeaders()) {
    state << " | " << Text(leader->GetAnchor()) << leader->IsAnchorCalculated() << leader->IsOccluded()
          << leader->IsVisible() << leader->IsWithinInsetBounds() << leader->GetBendPoints().size();
  }
  return state.str();
}

std::string FaultStage::State() const {
  std::ostringstream state;
  const auto shown = scene_->IsDestroyed() ? std::vector<CalloutPtr>() : Shown();
  for (const auto& callout : shown) state << StateOf(*callout) << '\n';
  for (const char* name : {"bolt", "bolt#2", "bolt#3", "nut", "washer", "frame", "frame/beam", "weld", "weld/plate"}) {
    state << name << ':';
    for (const auto& callout : CalloutsOn(PartOf(name))) state << ' ' << Describe(*callout);
    state << '\n';
  }
  for (const unsigned item : items_->GetItemIds()) {
    std::vector<CalloutPtr> carriers;
    engine_->GetItemIdCallouts(item, carriers);
    state << items_->GetItemLabel(item) << (items_->IsIndicated(item) ? " shown" : " not shown") << carriers.size()
          << '\n';
  }
  for (const auto& callout : sheetCallouts_) {
    state << callout->GetPosition().x << ' ' << callout->GetPosition().y
          << callout->GetTextElement()->GetString().GetString();
  }
  state << '\n' << answer_ << '\n' << items_->GetObserverCount() << sheet_->GetAnnotations2D().size();
  if (inset_) state << inset_->GetObserverCount() << inset_->GetShownCallouts().size() << inset_->HasTemplateObserver();
  return state.str();
}

void FaultStage::TakeBack() {
  if (operation_) operation_->Undo();
  operation_.Reset();
}

void FaultStage::Clear() {
  engine_->SetTemplate(NumberTemplate());
  operation_.Reset();
  if (made_) made_->Destroy();
  made_.Reset();
  static_cast<void>(zritemlist::ItemList::CreateItemListForScene(other_));
  LookAlong({-1, -2, -3});
  scene_->SetDrawWhenHidden(drawWhenHidden_);
  for (const auto& annotation : scene_->GetAnnoSet()->GetAnnotations()) Remove(annotation);
  if (symbol_) scene_->RemoveShapeInstance(scene_->GetShapeInstance(symbol_->GetInstance()));
  for (const auto& annotation : sheet_->GetAnnotations2D()) sheet_->RemoveAnnotation2D(annotation);
  itemList_->ClearList(nullptr);
  zrk::UndoHistory::Clear(scene_);
}

void FaultStage::ExpectIdle() const {
  static_cast<void>(picks_->Take());  // dropped, as by a view that has no time for them
  auto* const lock = engine_->GetReadWriteLock();
  std::packaged_task<void()> locking([lock] { const dp::ReadWriteLock::WriteGuard guard(lock); });
  const auto done = locking.get_future();
  std::thread thread(std::move(locking));
  if (done.wait_for(kDeadline) != std::future_status::ready) {
    std::cerr << "the engine's lock is still held" << std::endl;
    std::_Exit(1);
  }
  thread.join();
  EXPECT_EQ(engine_->GetPickRequestCount(), 0u);
}

}  // namespace zrtest
