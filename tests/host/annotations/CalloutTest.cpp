#include <zrannotations/Callout.h>

#include <thread>

#include <zrannotations/CombinedCallout.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/MemoryPool.h>
#include <zrk/View.h>

#include "AnnotationFixture.h"

namespace zrtest {

namespace {

using zrannotations::Callout;

class CalloutTest : public AnnotationFixture {
protected:
  CalloutPtr MakeAssemblyCallout() {
    const auto callout = zrk::MakeObject<Callout>();
    callout->Initialize(MakeTemplate("item"), scene_, drive_);
    return Name(callout, "assembly callout");
  }
};

/// Unregisters itself from its callout in the middle of the notification.
class SelfRemovingObserver final : public zrk::illustration::CalloutTemplateObserver {
public:
  explicit SelfRemovingObserver(const CalloutPtr& callout) : callout_(callout) {}
  void OnTemplateModified(const TemplatePtr&) override {
    ++modified;
    callout_->UnregisterTemplateObserver();
  }
  void OnTemplateReplaced(const TemplatePtr&) override { ++replaced; }
  int modified = 0;
  int replaced = 0;

private:
  CalloutPtr callout_;
};

TEST_F(CalloutTest, LeadersReportIdsAndTargets) {
  const CalloutPtr callout = MakeCallout(housing_);
  callout->ConnectLeader(callout->CreateCalloutLeader(dg::DPoint3D(), symbol_));
  callout->ConnectLeader(MakeAssemblyCallout()->GetLeaders().front());
  callout->AddUnresolvedLeader("gearbox/lost", "");
  struct Case {
    const char* shapeId;
    const char* assemblyId;
    ShapePtr shape;
    SbomPtr sbom;
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
    EXPECT_EQ(callout->GetSbomInstanceAtPos(i), cases[i].sbom) << i;
  }
  EXPECT_EQ(callout->GetLeaderLineCount(true), 4u);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 3u);
  callout->GetLeaders()[1]->SetHidden(true);
  callout->SetVisible("gearbox/housing", false);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 2u) << "visibility plays no part";

  callout->SetSymbolIdAtPos(7, 1);
  callout->SetSymbolIdAtPos(7, 9);
  callout->SetInsetAtPos(zrk::MakeObject<zrannotations::Inset>(), 9);
  EXPECT_EQ(callout->GetSymbolIdAtPos(1), 7u);
  EXPECT_EQ(callout->GetSymbolIdAtPos(9), 0u);
  EXPECT_FALSE(callout->GetInsetAtPos(9));
}

TEST_F(CalloutTest, InitializeTakesTypeFromTheTemplate) {
  const CalloutPtr raw = zrk::MakeObject<Callout>();
  raw->Initialize(nullptr, ShapePtr());
  EXPECT_FALSE(raw->IsInitialized());
  struct Case {
    const char* kind;
    unsigned type;
    bool localizable;
  };
  for (const Case& testCase : {Case{"item", 0, false}, Case{"literal", 1, true}, Case{"property", 2, true}}) {
    const CalloutPtr callout = MakeCallout(nullptr, testCase.kind);
    EXPECT_TRUE(callout->IsInitialized());
    EXPECT_EQ(callout->GetType(), testCase.type) << testCase.kind;
    EXPECT_EQ(callout->IsLabelLocalizable(), testCase.localizable) << testCase.kind;
    EXPECT_EQ(callout->GetLeaderLineCount(true), 0u);
  }
  const CalloutPtr assembly = zrk::MakeObject<Callout>();
  assembly->Initialize(nullptr, nullptr, drive_);
  EXPECT_EQ(assembly->GetLeaderLineCount(true), 1u);
  EXPECT_EQ(assembly->GetLeaderLineCount(false), 0u) << "no scene to find the shapes in";
}

TEST_F(CalloutTest, LeadersResolveWhenTheirTargetsComeBack) {
  const CalloutPtr part = MakeCallout(housing_);
  const CalloutPtr loaded = Name(zrk::MakeObject<Callout>(), "loaded");
  loaded->AddUnresolvedLeader("gearbox/housing", "");
  loaded->AddUnresolvedLeader("", "gearbox/drive");
  const CalloutPtr assembly = MakeAssemblyCallout();
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
  const auto again = zrk::MakeObject<zrk::ShapeInstance>(housing_->GetInstance(), housing_->GetShape(), MakeBox(2),
                                                         At(dg::DPoint3D(11, 0, 0)));
  const auto gearAgain = zrk::MakeObject<zrk::ShapeInstance>(gear_->GetInstance(), gear_->GetShape(), MakeBox(2),
                                                             At(dg::DPoint3D(0, 40, 0)));
  scene_->AddShapeInstance(again);
  scene_->AddShapeInstance(gearAgain);
  part->OnShapeInstanceCreate(again);
  assembly->OnShapeInstanceCreate(gearAgain);
  assembly->OnShapeInstanceCreate(again);
  loaded->UpdateWithCalloutInfo();
  EXPECT_EQ(part->GetShapeInstanceAtPos(0), again);
  EXPECT_EQ(loaded->GetLeaderLineCount(false), 2u);
  EXPECT_EQ(assembly->GetLeaderLineCount(false), 1u);
  const auto shapes = assembly->GetLeaders().front()->GetShapeInstances();
  EXPECT_TRUE(shapes.count(gearAgain));
  EXPECT_FALSE(shapes.count(again)) << "the housing is no part of the drive";
  ExpectPoint(part->GetLeaders().front()->GetAnchor(), 11, 0, 0);
}

TEST_F(CalloutTest, UpdateWithCalloutInfoTakesSymbolsAndEntersInsets) {
  const CalloutPtr callout = MakeCallout(symbol_);
  callout->ConnectLeader(callout->CreateCalloutLeader(dg::DPoint3D(), housing_));
  const auto inset = zrk::MakeObject<zrannotations::Inset>();
  callout->SetInsetAtPos(inset, 1);
  const auto annotation = zrk::MakeObject<zrannotations::SymbolAnnotation>(symbol_->GetInstance());
  EXPECT_EQ(annotation->GetInstanceId(), du::Symbol("weld-1"));
  Callout::InsetTable insets;
  callout->UpdateWithCalloutInfo({{symbol_->GetInstance(), annotation}}, insets);
  EXPECT_EQ(callout->GetSymbolIdAtPos(0), annotation->Id());
  EXPECT_EQ(callout->GetSymbolIdAtPos(1), 0u);
  EXPECT_EQ(insets, Callout::InsetTable({{inset, {callout}}}));
}

TEST_F(CalloutTest, SetVisibleReachesTheLeadersOfThatId) {
  const CalloutPtr callout = MakeCallout(housing_);
  callout->ConnectLeader(callout->CreateCalloutLeader(dg::DPoint3D(), shaft_));
  callout->ConnectLeader(MakeAssemblyCallout()->GetLeaders().front());
  struct Case {
    const char* id;
    std::vector<bool> drawn;
  };
  for (const Case& testCase : {Case{"gearbox/housing", {false, true, true}}, Case{"gearbox/drive", {true, true, false}},
                               Case{"gearbox", {true, true, true}}, Case{"", {true, true, true}}}) {
    callout->SetVisible(testCase.id, false);
    std::vector<bool> drawn;
    for (const auto& leader : callout->GetLeaders()) drawn.push_back(leader->IsDrawn());
    EXPECT_EQ(drawn, testCase.drawn) << testCase.id;
    callout->SetVisible(testCase.id, true);
  }
}

TEST_F(CalloutTest, ProvisionalAnchorsAreComputedAnewAndPickedOnesMoveRigidly) {
  const CalloutPtr callout = MakeCallout(housing_);
  const auto leader = callout->GetLeaders().front();
  EXPECT_FALSE(leader->IsAnchorCalculated());
  leader->SetAnchor(dg::DPoint3D(99, 0, 0));
  callout->OnShapeInstanceLocation(housing_);
  ExpectPoint(leader->GetAnchor(), 10, 0, 0);

  const dg::DPoint3D picked(10.1, 0.7, 0.3);
  leader->SetAnchor(picked);
  leader->SetAnchorCalculated(true);
  dg::FMat33 quarterTurn;
  const float rows[3][3] = {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}};
  std::copy(&rows[0][0], &rows[0][0] + 9, &quarterTurn.m[0][0]);
  housing_->SetLocation(dg::Location(quarterTurn, dg::DPoint3D(50, 0, 0)));
  callout->OnShapeInstanceLocation(housing_);
  ExpectPoint(leader->GetAnchor(), 50 - 0.7, 0.1, 0.3);

  // Back where it was picked: exactly, to the last bit, whatever the numbers.
  const dg::Location odd(dg::FMat33::Scale(0.7), dg::DPoint3D(1.0 / 3, 1e5 / 7, -2.0 / 9));
  housing_->SetLocation(odd);
  callout->OnShapeInstanceLocation(housing_);
  leader->SetAnchor(picked);
  leader->SetAnchorCalculated(true);
  for (const dg::Location& location : {At(dg::DPoint3D(10, 0, 0)), odd}) {
    housing_->SetLocation(location);
    callout->OnShapeInstanceLocation(housing_);
  }
  EXPECT_EQ(leader->GetAnchor().x, picked.x);
  EXPECT_EQ(leader->GetAnchor().y, picked.y);
  EXPECT_EQ(leader->GetAnchor().z, picked.z);

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
  for (const ShapePtr& shape : {shaft_, gear_}) {
    const dg::DPoint3D old = shape->GetLocation().GetPos();
    shape->SetLocation(At(dg::DPoint3D(old.x + 5, old.y, old.z)));
    callout->OnShapeInstanceLocation(shape);
  }
  callout->OnShapeInstanceLocation(housing_);
  ExpectPoint(leader->GetAnchor(), 5, 20, 0);
  ExpectPoint(callout->GetInstanceLocationAtPos(0, false).GetPos(), 5, 24.5, 0);
}

TEST_F(CalloutTest, CountsAsUserOfItsTemplateWhileItUsesIt) {
  const TemplatePtr first = MakeTemplate("item");
  const TemplatePtr second = MakeTemplate("item");
  CalloutPtr callout = zrk::MakeObject<Callout>();
  callout->Initialize(first, housing_);
  EXPECT_EQ(first->GetUserCount(), 1u);
  callout->UpdateDefinition(second);
  EXPECT_EQ(first->GetUserCount(), 0u);
  EXPECT_EQ(second->GetUserCount(), 1u);
  const CalloutPtr other = zrk::MakeObject<Callout>();
  other->Initialize(second, gear_);
  EXPECT_EQ(second->GetUserCount(), 2u);
  callout->ReleaseCalloutTemplate();
  callout->ReleaseCalloutTemplate();
  EXPECT_EQ(second->GetUserCount(), 1u) << "the other callout's use";
  EXPECT_EQ(callout->GetDefinition(), second) << "still known after the release";
  callout->UpdateDefinition(first);
  EXPECT_EQ(first->GetUserCount(), 0u);
  callout->RegisterTemplateObserver(du::SmartPtr<SelfRemovingObserver>(new SelfRemovingObserver(nullptr)));
  EXPECT_EQ(first->GetUserCount(), 1u);
  callout.Reset();
  EXPECT_EQ(first->GetUserCount(), 0u);
  EXPECT_EQ(first->GetObserverCount(), 0u);
}

TEST_F(CalloutTest, ExchangesOfTheTemplateObserverOnTwoThreadsLeaveNoneBehind) {
  const TemplatePtr both[] = {MakeTemplate("item"), MakeTemplate("item")};
  const CalloutPtr callout = zrk::MakeObject<Callout>();
  callout->Initialize(both[0], housing_);
  const auto exchange = [&] {
    for (int round = 0; round < 3000; ++round) {
      callout->RegisterTemplateObserver(du::SmartPtr<SelfRemovingObserver>(new SelfRemovingObserver(callout)));
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
  const TemplatePtr first = MakeTemplate("item");
  const TemplatePtr second = MakeTemplate("item");
  const CalloutPtr callout = zrk::MakeObject<Callout>();
  callout->Initialize(first, housing_);
  const du::SmartPtr<SelfRemovingObserver> observer(new SelfRemovingObserver(callout));
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
  const auto view = zrk::MakeObject<zrk::ShapeView>();
  scene_->AddView(view);
  const CalloutPtr callout = MakeCallout(housing_);
  callout->NotifyCalloutChanged();
  EXPECT_EQ(view->GetDirtyCount(), 0u);
  set_->AddAnnotationToSet(callout, nullptr);
  listener_->Take();
  callout->NotifyCalloutChanged();
  EXPECT_EQ(view->GetDirtyCount(), 1u);
  EXPECT_EQ(callout->GetNotifyCalloutChangedCount(), 2u);
  EXPECT_EQ(listener_->Take(), Events({"changed callout"}));
}

TEST_F(CalloutTest, SubsetSceneIsNotKeptAlive) {
  const CalloutPtr callout = MakeCallout(housing_);
  auto subset = zrk::MakeObject<zrk::ShapeScene>();
  callout->AttachSubsetScene(subset, "detail");
  EXPECT_EQ(callout->GetSubsetScene(), subset);
  EXPECT_EQ(callout->GetSubsetSceneName(), "detail");
  subset.Reset();
  EXPECT_FALSE(callout->GetSubsetScene());
}

TEST_F(CalloutTest, RedoneGenerationBringsTheSameCalloutBack) {
  const CalloutPtr callout = MakeCallout(housing_);
  callout->ConnectLeader(callout->CreateCalloutLeader(dg::DPoint3D(), gear_));
  callout->GetLeaders().back()->SetHidden(true);
  callout->SetItemId(12);
  callout->SetText("12", false);
  callout->SetLabelPosition(dg::DPoint3D(1, 2, 3));
  const OperationPtr operation = MakeOperation();
  set_->AddAnnotationToSet(callout, operation);
  zrk::RecordOperation(operation);
  ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_FALSE(set_->Contains(callout));
  callout->ReleaseCalloutTemplate();
  ASSERT_TRUE(zrk::UndoHistory::Redo(scene_));
  EXPECT_EQ(set_->GetAnnotations(), std::vector<AnnotationPtr>({callout}));
  EXPECT_EQ(callout->GetText(false), du::Symbol("12"));
  EXPECT_TRUE(callout->CarriesItemId(12));
  EXPECT_EQ(callout->GetLeaderLineCount(true), 2u);
  EXPECT_EQ(callout->GetLeaderLineCount(false), 1u);
  ExpectPoint(callout->GetMarkupLabelPosition(), 11, 2, 3);
}

TEST_F(CalloutTest, AddressesAscendAndInjectedFaultsReachOnlyTheCaller) {
  const CalloutPtr first = zrk::MakeObject<Callout>();
  const CalloutPtr second = zrk::MakeObject<zrannotations::CombinedCallout>();
  const CalloutPtr third = zrk::MakeObject<Callout>();
  EXPECT_LT(first, second);
  EXPECT_LT(second, third);
  zrk::MemoryPool::FailNext(1);
  EXPECT_EQ(new Callout, nullptr);
  EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), 1u);
  zrk::MemoryPool::FailNext(1);
  EXPECT_TRUE(first->CreateCalloutLeader(dg::DPoint3D(), housing_));
  set_->AddAnnotationToSet(first, MakeOperation());
  EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), 0u);
  zrk::MemoryPool::FailNext(0);
}

}  // namespace

}  // namespace zrtest
