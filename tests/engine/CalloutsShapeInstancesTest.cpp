// Callouts follow their parts: shape instances that are created, moved, shown, hidden or removed.
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>

#include "engine/EngineFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;

class CalloutsShapeInstancesTest : public zrtest::EngineFixture {
protected:
  static double AnchorOf(const CalloutPtr& callout) { return callout->GetLeaders()[0]->GetAnchor().x; }
  static bool IsShown(const CalloutPtr& callout) { return callout->GetLeaders()[0]->IsVisible(); }

  const Part frame_ = structure_->AddAssembly(structure_->Root(), "frame");
  const Part module_ = structure_->AddAssembly(frame_, "module");
  const Part pin_ = structure_->AddPart(module_, "pin");
  const Part symbol_ = structure_->AddSymbol("S");
};

TEST_F(CalloutsShapeInstancesTest, AMoveReachesThePartAndEveryAssemblyAboveItWithTheirLabels) {
  const auto onPart = AddNote(pin_);
  const auto onFrame = AddNoteOnAssembly(frame_);  // two levels up, the level between has no callout
  const auto onSymbol = AddNote(symbol_);
  const auto elsewhere = AddNote(nut_);
  const double labelBefore = onPart->GetMarkupLabelPosition().x;
  Move(pin_, 7);
  Move(symbol_, 3);
  EXPECT_DOUBLE_EQ(AnchorOf(onPart), 7);
  EXPECT_DOUBLE_EQ(onPart->GetMarkupLabelPosition().x, labelBefore + 7);
  EXPECT_DOUBLE_EQ(AnchorOf(onFrame), 7);
  EXPECT_DOUBLE_EQ(AnchorOf(onSymbol), 3);
  EXPECT_DOUBLE_EQ(AnchorOf(elsewhere), 0);
}

TEST_F(CalloutsShapeInstancesTest, AnAssemblyIsShownWhileAnyOfItsPartsIs) {
  const Part washer = structure_->AddPart(module_, "washer");
  const auto onPart = AddNote(pin_);
  const auto onFrame = AddNoteOnAssembly(frame_);
  const auto onSymbol = AddNote(symbol_);
  const struct {
    Part part;
    bool visible;
    bool partShown, frameShown, symbolShown;
  } steps[] = {
      {pin_, false, false, true, true},    {washer, false, false, false, true}, {pin_, true, true, true, true},
      {symbol_, false, true, true, false}, {symbol_, true, true, true, true},
  };
  for (const auto& step : steps) {
    step.part.shape->SetVisible(step.visible);
    EXPECT_EQ(IsShown(onPart), step.partShown);
    EXPECT_EQ(IsShown(onFrame), step.frameShown);
    EXPECT_EQ(IsShown(onSymbol), step.symbolShown);
  }
}

TEST_F(CalloutsShapeInstancesTest, ACalloutThatIsOnlyFiledIsToldOfMovesButNotShownOrHidden) {
  const auto filed = MakeNote(pin_);
  engine_->AddToMap(filed);
  Move(pin_, 4);
  EXPECT_DOUBLE_EQ(AnchorOf(filed), 4);
  pin_.shape->SetVisible(false);
  EXPECT_TRUE(IsShown(filed));
  scene_->RemoveShapeInstance(pin_.shape);
  scene_->AddShapeInstance(pin_.shape);
  EXPECT_EQ(filed->GetShapeInstanceAtPos(0), pin_.shape);
  EXPECT_FALSE(filed->GetSubsetScene());
}

TEST_F(CalloutsShapeInstancesTest, APartThatComesBackFindsItsLeadersAndKeepsTheLabel) {
  const auto callout = AddNote(pin_);
  callout->AddUnresolvedLeader(nut_.Id(), "");  // this one is looked up on the same occasion
  callout->SetLabelPosition({1, 2, 3});
  scene_->RemoveShapeInstance(pin_.shape);
  ASSERT_EQ(callout->GetLeaderLineCount(false), 0u);
  scene_->AddShapeInstance(pin_.shape);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 2u);
  EXPECT_DOUBLE_EQ(callout->GetPosition().z, 3);
  EXPECT_EQ(callout->GetSubsetScene(), scene_);
  EXPECT_EQ(callout->GetSubsetSceneName(), pin_.Id());
}

TEST_F(CalloutsShapeInstancesTest, ARemoved3DSymbolTakesItsCalloutsAlongWithoutAnUndoStep) {
  const CalloutPtr onSymbol[] = {AddNote(symbol_), AddNote(symbol_), AddNote(symbol_)};
  const auto onOther = AddNote(structure_->AddSymbol("S2"));
  scene_->RemoveShapeInstance(symbol_.shape);
  for (const auto& callout : onSymbol) EXPECT_FALSE(IsIn(callout));
  EXPECT_TRUE(IsIn(onOther));
  EXPECT_EQ(zrk::UndoHistory::GetCount(scene_), 0u);
}

TEST_F(CalloutsShapeInstancesTest, ShapesWithoutInstanceOrStructureChangeNothing) {
  const auto callout = AddNote(pin_);
  const auto stray = zrk::MakeObject<zrk::ShapeInstance>(nullptr, nullptr, dg::DBox(), dg::Location());
  const auto unbound = zrk::MakeObject<zrk::Instance>(zrk::MakeObject<zrk::ComponentNode>("loose"), nullptr, "loose");
  const auto loose = zrk::MakeObject<zrk::ShapeInstance>(unbound, nullptr, dg::DBox(), dg::Location());
  for (const auto& shape : {du::SmartPtr<zrk::ShapeInstance>(), stray, loose}) {
    engine_->OnShapeInstanceCreate(shape);
    engine_->OnShapeInstanceLocation(shape);
    engine_->OnShapeInstanceVisibility(shape, false);
    engine_->OnShapeInstanceRemove(shape);
  }
  EXPECT_TRUE(IsShown(callout));
  EXPECT_FALSE(callout->GetSubsetScene());
}

TEST_F(CalloutsShapeInstancesTest, UpdatingAnchorsMovesEveryLeaderAndAlwaysTellsTheCallout) {
  const auto callout = AddNote(pin_);
  AddLeader(callout, pin_);
  callout->SetInsetAtPos(zrk::MakeObject<zrannotations::Inset>(), 1);
  Move(nut_, 9);
  engine_->UpdateLeaderAnchor(callout, nut_.shape);
  for (const auto& leader : callout->GetLeaders()) EXPECT_DOUBLE_EQ(leader->GetAnchor().x, 9);
  EXPECT_EQ(callout->GetVisibleWithinInsetBoundsCount(), 1u);  // only the leader that has an inset
  EXPECT_EQ(callout->GetNotifyCalloutChangedCount(), 1u);

  const auto leaderless = AddNote(Part{});
  engine_->UpdateLeaderAnchor(leaderless, nut_.shape);
  EXPECT_EQ(leaderless->GetNotifyCalloutChangedCount(), 1u);
  engine_->UpdateLeaderAnchor(nullptr, nut_.shape);
}

}  // namespace
