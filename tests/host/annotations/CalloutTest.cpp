#include <zrannotations/Callout.h>

#include <thread>

#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrannotations/MoveOperationStep.h>
#include <zrk/MemoryPool.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/CalloutTemplateObserver.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::Callout;

class CalloutTest : public AnnotationFixture {};

/// Unregisters itself from its callout in the middle of the notification.
struct SelfRemovingObserver final : zrk::illustration::CalloutTemplateObserver {
  explicit SelfRemovingObserver(const CalloutPtr& observed) : callout(observed) {}
  void OnTemplateModified(const TemplatePtr&) override {
    ++modified;
    callout->UnregisterTemplateObserver();
  }
  const CalloutPtr callout;
  int modified = 0;
};

TEST_F(CalloutTest, ProvisionalAnchorsAreComputedAnewAndPickedOnesMoveRigidly) {
  const CalloutPtr callout = MakeCallout(housing_);
  const auto leader = callout->GetLeaders().front();
  leader->SetAnchor({99, 0, 0});
  callout->OnShapeInstanceLocation(housing_);
  ExpectPoint(leader->GetAnchor(), 10, 0, 0);

  const dg::DPoint3D picked(10.1, 0.7, 0.3);
  leader->SetAnchor(picked);
  leader->SetAnchorCalculated(true);
  dg::FMat33 quarterTurn = dg::FMat33::Scale(0);
  quarterTurn.m[0][1] = quarterTurn.m[2][2] = 1;
  quarterTurn.m[1][0] = -1;
  Move(callout, housing_, dg::Location(quarterTurn, {50, 0, 0}));
  ExpectPoint(leader->GetAnchor(), 50 - 0.7, 0.1, 0.3);

  // Back where it was picked: exactly, to the last bit, whatever the numbers.
  const dg::Location odd(dg::FMat33::Scale(0.7), {1.0 / 3, 1e5 / 7, -2.0 / 9});
  Move(callout, housing_, odd);
  leader->SetAnchor(picked);
  leader->SetAnchorCalculated(true);
  Move(callout, housing_, At({10, 0, 0}));
  Move(callout, housing_, odd);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(leader->GetAnchor()[i], picked[i]);

  // The drive reaches from y 18 to 31: its middle is nearest to the shaft.
  const auto assembly = MakeObject<Callout>();
  assembly->Initialize(MakeTemplate(), scene_, drive_);
  ExpectPoint(assembly->GetLeaders().front()->GetAnchor(), 0, 20, 0);
  ExpectPoint(assembly->GetInstanceLocationAtPos(0, false).GetPos(), 0, 24.5, 0);
  Move(assembly, shaft_, At({5, 20, 0}));
  Move(assembly, gear_, At({5, 30, 0}));
  ExpectPoint(assembly->GetLeaders().front()->GetAnchor(), 5, 20, 0);
}

TEST_F(CalloutTest, AssemblyLeaderTakesUpTheShapesBelowItsAssemblyOnly) {
  const auto callout = MakeObject<Callout>();
  callout->AddUnresolvedLeader("", "gearbox/drive");
  set_->AddAnnotationToSet(callout, nullptr);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 0u);
  callout->UpdateWithCalloutInfo();
  const auto shapes = [&] { return callout->GetLeaders().front()->GetShapeInstances(); };
  EXPECT_EQ(shapes(), (std::set{shaft_, gear_}));
  const auto axle = AddShape(AddPart(MakeNode("axle"), drive_), 2, {});
  for (const ShapePtr& shape : {axle, housing_}) callout->OnShapeInstanceCreate(shape);
  EXPECT_EQ(shapes(), (std::set{shaft_, gear_, axle}));
}

TEST_F(CalloutTest, LeaderIsDrawnInsideItsInsetOnly) {
  const CalloutPtr callout = MakeCallout(housing_);
  const auto inset = MakeObject<zrannotations::Inset>();
  callout->SetInsetAtPos(inset, 0);
  for (const double size : {2.0, 20.0}) {  // the border belongs to the inset
    inset->SetBounds(MakeBox(size));
    callout->SetVisibleWithinInsetBounds(inset);
    EXPECT_EQ(callout->GetLeaders().front()->IsDrawn(), size == 20.0);
  }
}

TEST_F(CalloutTest, ExchangesOfTheTemplateObserverOnTwoThreadsLeaveNoneBehind) {
  const TemplatePtr both[] = {MakeTemplate(), MakeTemplate()};
  const CalloutPtr callout = MakeCallout(housing_);
  const auto exchange = [&] {
    for (int round = 0; round < 3000; ++round) {
      callout->RegisterTemplateObserver(MakeObject<SelfRemovingObserver>(callout));
      callout->UpdateDefinition(both[round % 2]);
      callout->UnregisterTemplateObserver();
    }
  };
  std::thread other(exchange);
  exchange();
  other.join();
  for (const TemplatePtr& one : both) EXPECT_EQ(one->GetObserverCount(), 0u);
}

TEST_F(CalloutTest, TemplateObserverMovesWithTheDefinitionAndMayGoDuringANotification) {
  const CalloutPtr callout = MakeCallout(housing_);
  const TemplatePtr first = callout->GetDefinition(), second = MakeTemplate();
  const auto observer = MakeObject<SelfRemovingObserver>(callout);
  callout->RegisterTemplateObserver(observer);
  callout->UpdateDefinition(second);
  for (const TemplatePtr& edited : {first, second, second}) edited->SetTextContent({}, false);
  EXPECT_EQ(observer->modified, 1);
}

TEST_F(CalloutTest, LabelTravelsOnceWithItsPartInEitherState) {
  const CalloutPtr callout = MakeCallout(housing_);
  set_->AddAnnotationToSet(callout, nullptr);
  callout->SetLabelPosition({1, 1, 0});
  listener_->Take();
  Move(callout, housing_, At({30, 5, 0}));
  Move(callout, housing_, At({30, 5, 0}, 2));
  ExpectPoint(callout->GetMarkupLabelPosition(), 32, 7, 0);
  callout->SetLabelPosition(callout->GetPosition());
  EXPECT_EQ(listener_->Take(), Log({"adjusted callout", "adjusted callout"})) << "an equal place is no change";

  callout->SetLabelPlacementState(1);
  ExpectPoint(callout->GetPosition(), 32, 7, 0);
  Move(callout, housing_, At({10, 0, 0}, 2));
  for (const ShapePtr& other : {gear_, ShapePtr()}) callout->OnShapeInstanceLocation(other);
  ExpectPoint(callout->GetMarkupLabelPosition(), 12, 2, 0);
  callout->SetLabelPlacementState(0);
  ExpectPoint(callout->GetPosition(), 1, 1, 0);
}

TEST_F(CalloutTest, MoveOfALabelRelativeToTheScreenIsUndoneWhateverTheLabelIsThen) {
  const CalloutPtr callout = MakeCallout(housing_);
  callout->SetLabelScreenSpaceMode(MakeObject<zrk::ShapeView>());
  const dg::DPoint2D before = callout->GetRelativeScreenPosition();
  const OperationPtr operation = MakeOperation();
  operation->AddStep(
      MakeObject<zrannotations::MoveOperationStep>(callout, 0, At({before.x, before.y, 0}), At({0.25, 0.75, 0}), true));
  RecordOperation(operation);
  EXPECT_EQ(callout->GetRelativeScreenPosition().x, 0.25);
  callout->ClearLabelScreenSpaceMode();
  ASSERT_TRUE(Undo());
  EXPECT_EQ(callout->GetRelativeScreenPosition().x, before.x);
}

TEST_F(CalloutTest, AddressesAscendAndInjectedFaultsReachOnlyTheCaller) {
  const CalloutPtr first = MakeObject<Callout>(), second = MakeObject<zrannotations::CombinedCallout>();
  EXPECT_LT(first, second);
  EXPECT_LT(second, MakeObject<Callout>());
  zrk::MemoryPool::FailNext(1);
  EXPECT_EQ(new Callout, nullptr);
  EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), 1u);
  zrk::MemoryPool::FailNext(1);
  EXPECT_TRUE(first->CreateCalloutLeader({}, housing_));
  set_->AddAnnotationToSet(first, MakeOperation());
  EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), 0u);
  zrk::MemoryPool::FailNext(0);
}

TEST_F(CalloutTest, PlainTextLeavesMarkdownOut) {
  const CalloutPtr callout = MakeCallout(housing_);
  const std::pair<const char*, const char*> cases[] = {
      {"**12** pcs", "12 pcs"}, {"M8\\_x\\*", "M8_x*"}, {"M8_x_20", "M8_x_20"}, {"_thin_", "thin"},
      {"# 2\na#b", "2\na#b"},   {"\\", "\\"},           {"`~x~`", "x"},         {"", ""}};
  for (const auto& [markdown, plain] : cases) {
    callout->SetText(markdown, false);
    callout->SetIsMarkdown(true);
    EXPECT_EQ(callout->GetText(true).GetString(), plain);
    callout->SetIsMarkdown(false);
    EXPECT_EQ(callout->GetText(true).GetString(), markdown);
  }
}

}  // namespace zrtest
