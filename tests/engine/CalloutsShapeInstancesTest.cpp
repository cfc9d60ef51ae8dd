// Callouts follow their parts: shape instances that are created, moved, shown, hidden or removed.
#include <dg/FMat33.h>
#include <dg/Location.h>
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::SceneFixture;

class CalloutsShapeInstancesTest : public SceneFixture {
protected:
  static void Move(const Part& part, double x) {
    part.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(x, 0, 0)));
  }

  [[nodiscard]] CalloutPtr AddCalloutOnAssembly(const Part& assembly) {
    auto callout = MakeCallout(zrtest::TextTemplate("assembly"), Part{});
    AddAssemblyLeader(callout, assembly);
    Add(callout);
    return callout;
  }

  Part frame_ = structure_->AddAssembly(structure_->Root(), "frame");
  Part module_ = structure_->AddAssembly(frame_, "module");
  Part bolt_ = structure_->AddPart(module_, "bolt");
  Part nut_ = structure_->AddPart(structure_->Root(), "nut");
};

TEST_F(CalloutsShapeInstancesTest, AMoveReachesThePartAndEveryAssemblyAboveIt) {
  const auto onPart = AddCallout(zrtest::TextTemplate("part"), bolt_);
  const auto onFrame = AddCalloutOnAssembly(frame_);  // two levels up, the level between has no callout
  const auto elsewhere = AddCallout(zrtest::TextTemplate("nut"), nut_);
  Move(bolt_, 7);
  EXPECT_DOUBLE_EQ(onPart->GetLeaders()[0]->GetAnchor().x, 7);
  EXPECT_DOUBLE_EQ(onFrame->GetLeaders()[0]->GetAnchor().x, 7);
  EXPECT_DOUBLE_EQ(elsewhere->GetLeaders()[0]->GetAnchor().x, 0);
}

TEST_F(CalloutsShapeInstancesTest, A3DSymbolMovesItsCallouts) {
  const Part symbol = structure_->AddSymbol("S");
  const auto callout = AddCallout(zrtest::TextTemplate("symbol"), symbol);
  Move(symbol, 3);
  EXPECT_DOUBLE_EQ(callout->GetLeaders()[0]->GetAnchor().x, 3);
  symbol.shape->SetVisible(false);
  EXPECT_FALSE(callout->GetLeaders()[0]->IsVisible());
  symbol.shape->SetVisible(true);
  EXPECT_TRUE(callout->GetLeaders()[0]->IsVisible());
}

TEST_F(CalloutsShapeInstancesTest, AnAssemblyIsShownWhileAnyOfItsPartsIs) {
  const Part washer = structure_->AddPart(module_, "washer");
  const auto onPart = AddCallout(zrtest::TextTemplate("part"), bolt_);
  const auto onFrame = AddCalloutOnAssembly(frame_);
  struct Step {
    Part part;
    bool visible;
    bool partShown, frameShown;
  };
  const Step steps[] = {{bolt_, false, false, true}, {washer, false, false, false}, {bolt_, true, true, true}};
  for (const Step& step : steps) {
    step.part.shape->SetVisible(step.visible);
    EXPECT_EQ(onPart->GetLeaders()[0]->IsVisible(), step.partShown);
    EXPECT_EQ(onFrame->GetLeaders()[0]->IsVisible(), step.frameShown);
  }
}

TEST_F(CalloutsShapeInstancesTest, ACalloutThatIsOnlyFiledIsToldOfMovesButNotShownOrHidden) {
  const auto filed = MakeCallout(zrtest::TextTemplate("filed"), bolt_);
  engine_->AddToMap(filed);
  Move(bolt_, 4);
  EXPECT_DOUBLE_EQ(filed->GetLeaders()[0]->GetAnchor().x, 4);
  bolt_.shape->SetVisible(false);
  EXPECT_TRUE(filed->GetLeaders()[0]->IsVisible());
  scene_->RemoveShapeInstance(bolt_.shape);
  scene_->AddShapeInstance(bolt_.shape);
  EXPECT_EQ(filed->GetShapeInstanceAtPos(0), bolt_.shape);
  EXPECT_FALSE(filed->GetSubsetScene());
}

TEST_F(CalloutsShapeInstancesTest, APartThatComesBackFindsItsLeadersAndKeepsTheLabel) {
  const auto callout = AddCallout(zrtest::TextTemplate("part"), bolt_);
  callout->AddUnresolvedLeader(nut_.Id(), "");  // this one is looked up on the same occasion
  callout->SetLabelPosition({1, 2, 3});
  scene_->RemoveShapeInstance(bolt_.shape);
  ASSERT_EQ(callout->GetLeaderLineCount(false), 0u);
  scene_->AddShapeInstance(bolt_.shape);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 2u);
  EXPECT_DOUBLE_EQ(callout->GetPosition().z, 3);
  EXPECT_EQ(callout->GetSubsetScene(), scene_);
  EXPECT_EQ(callout->GetSubsetSceneName(), bolt_.Id());
  EXPECT_TRUE(scene_->GetAnnoSet()->Contains(callout));
}

TEST_F(CalloutsShapeInstancesTest, ARemoved3DSymbolTakesItsCalloutsAlongWithoutAnUndoStep) {
  const Part symbol = structure_->AddSymbol("S");
  const Part other = structure_->AddSymbol("S2");
  std::vector<CalloutPtr> onSymbol;
  for (int i = 0; i < 3; ++i) onSymbol.push_back(AddCallout(zrtest::TextTemplate("symbol"), symbol));
  const auto onOther = AddCallout(zrtest::TextTemplate("other"), other);
  scene_->RemoveShapeInstance(symbol.shape);
  for (const auto& callout : onSymbol) EXPECT_FALSE(scene_->GetAnnoSet()->Contains(callout));
  EXPECT_TRUE(scene_->GetAnnoSet()->Contains(onOther));
  EXPECT_EQ(zrk::UndoHistory::GetCount(scene_), 0u);
}

TEST_F(CalloutsShapeInstancesTest, ShapesWithoutInstanceOrStructureChangeNothing) {
  const auto callout = AddCallout(zrtest::TextTemplate("part"), bolt_);
  const auto stray = zrk::MakeObject<zrk::ShapeInstance>(nullptr, nullptr, dg::DBox(), dg::Location());
  const auto unbound = zrk::MakeObject<zrk::Instance>(zrk::MakeObject<zrk::ComponentNode>("loose"), nullptr, "loose");
  const auto loose = zrk::MakeObject<zrk::ShapeInstance>(unbound, nullptr, dg::DBox(), dg::Location());
  for (const auto& shape : {du::SmartPtr<zrk::ShapeInstance>(), stray, loose}) {
    engine_->OnShapeInstanceCreate(shape);
    engine_->OnShapeInstanceLocation(shape);
    engine_->OnShapeInstanceVisibility(shape, false);
    engine_->OnShapeInstanceRemove(shape);
  }
  EXPECT_TRUE(callout->GetLeaders()[0]->IsVisible());
  EXPECT_FALSE(callout->GetSubsetScene());
}

TEST_F(CalloutsShapeInstancesTest, UpdatingAnchorsMovesEveryLeaderAndAlwaysTellsTheCallout) {
  const auto callout = AddCallout(zrtest::TextTemplate("part"), bolt_);
  AddLeader(callout, bolt_);
  const auto inset = zrk::MakeObject<zrannotations::Inset>();
  callout->SetInsetAtPos(inset, 1);
  nut_.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(0, 9, 0)));
  engine_->UpdateLeaderAnchor(callout, nut_.shape);
  for (const auto& leader : callout->GetLeaders()) EXPECT_DOUBLE_EQ(leader->GetAnchor().y, 9);
  EXPECT_EQ(callout->GetVisibleWithinInsetBoundsCount(), 1u);  // only the leader that has an inset
  EXPECT_EQ(callout->GetNotifyCalloutChangedCount(), 1u);

  const auto leaderless = AddCallout(zrtest::TextTemplate("Note"), Part{});
  engine_->UpdateLeaderAnchor(leaderless, nut_.shape);
  EXPECT_EQ(leaderless->GetNotifyCalloutChangedCount(), 1u);
  engine_->UpdateLeaderAnchor(nullptr, nut_.shape);
}

}  // namespace
