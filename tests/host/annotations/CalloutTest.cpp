#include <zrannotations/Callout.h>

#include <thread>

#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/MemoryPool.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/CalloutTemplateObserver.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::Callout;
using zrannotations::Inset;

class CalloutTest : public AnnotationFixture {
protected:
  CalloutPtr MakeAssemblyCallout() {
    const auto callout = MakeObject<Callout>();
    callout->Initialize(MakeTemplate("item"), scene_, drive_);
    return callout;
  }
};

/// Unregisters itself from its callout in the middle of the notification.
struct SelfRemovingObserver final : zrk::illustration::CalloutTemplateObserver {
  explicit SelfRemovingObserver(const CalloutPtr& observed) : callout(observed) {}
  void OnTemplateModified(const TemplatePtr&) override {
    ++modified;
    callout->UnregisterTemplateObserver();
  }
  void OnTemplateReplaced(const TemplatePtr&) override { ++replaced; }
  const CalloutPtr callout;
  int modified = 0, replaced = 0;
};

TEST_F(CalloutTest, LeadersReportIdsAndTargets) {
  const CalloutPtr callout = MakeCallout(housing_);
  AddLeader(callout, symbol_);
  callout->ConnectLeader(MakeAssemblyCallout()->GetLeaders().front());
  callout->AddUnresolvedLeader("gearbox/lost", "");
  struct Case {
    const char *shapeId, *assemblyId;
    ShapePtr shape;
    PartPtr part;
  };
  const std::vector<Case> cases{{"gearbox/housing", "", housing_, housing_->GetInstance()->GetSbomInstance()},
                                {"/weld-1", "", symbol_, nullptr},
                                {"", "gearbox/drive", nullptr, drive_},
                                {"gearbox/lost", "", nullptr, nullptr},
                                {"", "", nullptr, nullptr}};
  for (unsigned i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(callout->GetShapeInstanceIdAtPos(i), cases[i].shapeId) << i;
    EXPECT_EQ(callout->GetAssemblyInstanceIdAtPos(i), cases[i].assemblyId) << i;
    EXPECT_EQ(callout->GetShapeInstanceAtPos(i), cases[i].shape) << i;
    EXPECT_EQ(callout->GetSbomInstanceAtPos(i), cases[i].part) << i;
  }
  EXPECT_EQ(callout->GetLeaderLineCount(true), 4u);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 3u);
  callout->GetLeaders()[1]->SetHidden(true);
  callout->SetVisible("gearbox/housing", false);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 2u) << "visibility plays no part";

  callout->SetSymbolIdAtPos(7, 1);
  callout->SetSymbolIdAtPos(7, 9);
  callout->SetInsetAtPos(MakeObject<Inset>(), 9);
  EXPECT_EQ(callout->GetSymbolIdAtPos(1), 7u);
  EXPECT_EQ(callout->GetSymbolIdAtPos(9), 0u);
  EXPECT_FALSE(callout->GetInsetAtPos(9));
}

TEST_F(CalloutTest, InitializeTakesTypeFromTheTemplate) {
  const auto raw = MakeObject<Callout>();
  raw->Initialize(nullptr, ShapePtr());
  EXPECT_FALSE(raw->IsInitialized());
  unsigned type = 0;
  for (const char* kind : {"item", "literal", "property"}) {
    const CalloutPtr callout = MakeCallout(nullptr, kind);
    EXPECT_TRUE(callout->IsInitialized());
    EXPECT_EQ(callout->IsLabelLocalizable(), type != 0) << kind;
    EXPECT_EQ(callout->GetType(), type++) << kind;
    EXPECT_EQ(callout->GetLeaderLineCount(true), 0u);
  }
  raw->Initialize(nullptr, nullptr, drive_);
  EXPECT_EQ(raw->GetLeaderLineCount(true), 1u);
  EXPECT_EQ(raw->GetLeaderLineCount(false), 0u) << "no scene to find the shapes in";
}

TEST_F(CalloutTest, LeadersResolveWhenTheirTargetsComeBack) {
  const CalloutPtr part = MakeCallout(housing_), loaded = MakeCallout(nullptr), assembly = MakeAssemblyCallout();
  loaded->AddUnresolvedLeader("gearbox/housing", "");
  loaded->AddUnresolvedLeader("", "gearbox/drive");
  for (const CalloutPtr& callout : {part, loaded, assembly}) set_->AddAnnotationToSet(callout, nullptr);
  EXPECT_EQ(loaded->GetLeaderLineCount(false), 0u);
  loaded->UpdateWithCalloutInfo();
  EXPECT_EQ(loaded->GetLeaderLineCount(false), 2u);

  for (const ShapePtr& shape : {housing_, shaft_, gear_}) scene_->RemoveShapeInstance(shape);
  for (const CalloutPtr& callout : {part, loaded, assembly}) {
    EXPECT_EQ(callout->GetLeaderLineCount(false), 0u);
    EXPECT_GT(callout->GetLeaderLineCount(true), 0u);
  }
  EXPECT_FALSE(part->GetShapeInstanceAtPos(0));
  EXPECT_EQ(part->GetShapeInstanceIdAtPos(0), "gearbox/housing");
  ExpectPoint(part->GetInstanceLocationAtPos(0, false).GetPos(), 10, 0, 0);

  // New shape instances for the same parts.
  const auto again = AddShape(housing_->GetInstance()->GetSbomInstance(), 2, At({11, 0, 0}));
  const auto gearAgain = AddShape(gear_->GetInstance()->GetSbomInstance(), 2, At({0, 40, 0}));
  part->OnShapeInstanceCreate(again);
  assembly->OnShapeInstanceCreate(gearAgain);
  assembly->OnShapeInstanceCreate(again);
  loaded->UpdateWithCalloutInfo();
  EXPECT_EQ(part->GetShapeInstanceAtPos(0), again);
  EXPECT_EQ(loaded->GetLeaderLineCount(false), 2u);
  const auto shapes = assembly->GetLeaders().front()->GetShapeInstances();
  EXPECT_TRUE(shapes.count(gearAgain));
  EXPECT_FALSE(shapes.count(again)) << "the housing is no part of the drive";
  ExpectPoint(part->GetLeaders().front()->GetAnchor(), 11, 0, 0);
}

TEST_F(CalloutTest, UpdateWithCalloutInfoTakesSymbolsAndEntersInsets) {
  const CalloutPtr callout = MakeCallout(symbol_);
  AddLeader(callout, housing_);
  const auto inset = MakeObject<Inset>();
  callout->SetInsetAtPos(inset, 1);
  const auto annotation = MakeObject<zrannotations::SymbolAnnotation>(symbol_->GetInstance());
  EXPECT_EQ(annotation->GetInstanceId(), du::Symbol("weld-1"));
  Callout::InsetTable insets;
  callout->UpdateWithCalloutInfo({{symbol_->GetInstance(), annotation}}, insets);
  EXPECT_EQ(callout->GetSymbolIdAtPos(0), annotation->Id());
  EXPECT_EQ(callout->GetSymbolIdAtPos(1), 0u);
  EXPECT_EQ(insets, Callout::InsetTable({{inset, {callout}}}));
}

TEST_F(CalloutTest, SetVisibleReachesTheLeadersOfThatId) {
  const CalloutPtr callout = MakeCallout(housing_);
  AddLeader(callout, shaft_);
  callout->ConnectLeader(MakeAssemblyCallout()->GetLeaders().front());
  const std::pair<const char*, const char*> cases[] = {
      {"gearbox/housing", "-++"}, {"gearbox/drive", "++-"}, {"gearbox", "+++"}, {"", "+++"}};
  for (const auto& [id, drawn] : cases) {
    callout->SetVisible(id, false);
    EXPECT_EQ(Drawn(callout), drawn) << id;
    callout->SetVisible(id, true);
  }
}

TEST_F(CalloutTest, ProvisionalAnchorsAreComputedAnewAndPickedOnesMoveRigidly) {
  const CalloutPtr callout = MakeCallout(housing_);
  const auto leader = callout->GetLeaders().front();
  EXPECT_FALSE(leader->IsAnchorCalculated());
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

  dg::DPoint3D untouched(1, 2, 3);
  EXPECT_FALSE(callout->CalculateAnchor(nullptr, untouched));
  EXPECT_FALSE(callout->CalculateAssemblyAnchor({}, untouched));
  ExpectPoint(untouched, 1, 2, 3);
}

TEST_F(CalloutTest, AssemblyAnchorsFollowTheirShapes) {
  const CalloutPtr callout = MakeAssemblyCallout();
  const auto leader = callout->GetLeaders().front();
  // The drive reaches from y 18 to 31: its middle is nearest to the shaft.
  ExpectPoint(leader->GetAnchor(), 0, 20, 0);
  ExpectPoint(callout->GetInstanceLocationAtPos(0, false).GetPos(), 0, 24.5, 0);
  Move(callout, shaft_, At({5, 20, 0}));
  Move(callout, gear_, At({5, 30, 0}));
  callout->OnShapeInstanceLocation(housing_);
  ExpectPoint(leader->GetAnchor(), 5, 20, 0);
  ExpectPoint(callout->GetInstanceLocationAtPos(0, false).GetPos(), 5, 24.5, 0);
}

TEST_F(CalloutTest, CountsAsUserOfItsTemplateWhileItUsesIt) {
  CalloutPtr callout = MakeCallout(housing_);
  const CalloutPtr other = MakeCallout(gear_);
  const TemplatePtr first = callout->GetDefinition(), second = other->GetDefinition();
  EXPECT_EQ(first->GetUserCount(), 1u);
  callout->UpdateDefinition(second);
  EXPECT_EQ(first->GetUserCount(), 0u);
  EXPECT_EQ(second->GetUserCount(), 2u);
  callout->ReleaseCalloutTemplate();
  callout->ReleaseCalloutTemplate();
  EXPECT_EQ(second->GetUserCount(), 1u) << "the other callout's use";
  EXPECT_EQ(callout->GetDefinition(), second) << "still known after the release";
  callout->UpdateDefinition(first);
  EXPECT_EQ(first->GetUserCount(), 0u);
  callout->RegisterTemplateObserver(MakeObject<SelfRemovingObserver>(nullptr));
  EXPECT_EQ(first->GetUserCount(), 1u);
  callout.Reset();
  EXPECT_EQ(first->GetUserCount() + first->GetObserverCount(), 0u);
}

TEST_F(CalloutTest, ExchangesOfTheTemplateObserverOnTwoThreadsLeaveNoneBehind) {
  const TemplatePtr both[] = {MakeTemplate("item"), MakeTemplate("item")};
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
  const TemplatePtr first = callout->GetDefinition(), second = MakeTemplate("item");
  const auto observer = MakeObject<SelfRemovingObserver>(callout);
  callout->RegisterTemplateObserver(observer);
  callout->UpdateDefinition(second);
  first->ReplaceBy(*second);
  EXPECT_EQ(observer->replaced, 0);
  second->ReplaceBy(*first);
  EXPECT_EQ(observer->replaced, 1);
  second->SetTextContent({}, false);
  second->SetTextContent({}, false);
  EXPECT_EQ(observer->modified, 1);
  EXPECT_FALSE(callout->HasTemplateObserver());
  callout->UnregisterTemplateObserver();
}

TEST_F(CalloutTest, NotifyCalloutChangedMarksViewZeroDirty) {
  const auto view = MakeObject<zrk::ShapeView>();
  scene_->AddView(view);
  const CalloutPtr callout = MakeCallout(housing_);
  callout->NotifyCalloutChanged();
  EXPECT_EQ(view->GetDirtyCount(), 0u);
  set_->AddAnnotationToSet(callout, nullptr);
  callout->NotifyCalloutChanged();
  EXPECT_EQ(view->GetDirtyCount(), 1u);
  EXPECT_EQ(callout->GetNotifyCalloutChangedCount(), 2u);
  EXPECT_EQ(listener_->Take(), Log({"add callout", "changed callout"}));
}

TEST_F(CalloutTest, SubsetSceneIsNotKeptAlive) {
  const CalloutPtr callout = MakeCallout(housing_);
  auto subset = MakeObject<zrk::ShapeScene>();
  callout->AttachSubsetScene(subset, "detail");
  EXPECT_EQ(callout->GetSubsetScene(), subset);
  subset.Reset();
  EXPECT_FALSE(callout->GetSubsetScene());
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

}  // namespace zrtest
