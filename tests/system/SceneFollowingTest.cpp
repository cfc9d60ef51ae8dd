// Long random sequences of what a user does to a scene, through the real engine: after every step the leaders stand on
// their items' instances, the registry is the one that the scene implies, and undo and redo come back to each state
// exactly.
#include <algorithm>
#include <cstdlib>
#include <random>

#include <zrannotations/AnnotationEdit.h>
#include <zrk/MakeObject.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/SceneEdit.h>

#include "support/GeneratorFixture.h"
#include "support/RegistryInvariants.h"

namespace {

using zrannotations::AnnotationEdit;
using zrk::UndoHistory;
using zrk::illustration::SceneEdit;
using zrtest::CalloutPtr;
using zrtest::CombinedPtr;
using zrtest::GeneratorFixture;
using zrtest::Part;
using CalloutSet = std::set<CalloutPtr>;
using PartSet = std::set<du::SmartPtr<zrk::illustration::SbomInstance>>;
using OperationPtr = du::SmartPtr<zrk::Operation>;

constexpr int kSteps = 60;

unsigned SeedCount() {
  const char* const given = std::getenv("ZR_TEST_SEEDS");
  return given ? static_cast<unsigned>(std::atoi(given)) : 50;
}

enum class Same { Apart, Combine, DrawOne };

class SceneFollowingTest : public GeneratorFixture, public testing::WithParamInterface<Same> {
protected:
  SceneFollowingTest() {
    engine_->SetCombineForSamePart(GetParam() == Same::Combine);
    engine_->SetDrawOneForSamePart(GetParam() == Same::DrawOne);
    const Part& root = structure_->Root();
    for (const char* name : {"bolt", "nut", "nut"}) structure_->AddPart(root, name, {0, 0, 4});
    for (const char* name : {"bolt", "bolt#2", "bolt#3", "nut", "nut#2", "nut#3", "washer", "frame", "frame/beam",
                             "frame/beam#2", "weld", "weld/plate", "weld/rib"}) {
      parts_.push_back(PartOf(name));
    }
    zritemlist::ItemList::SetListClearedHook([this](const auto&, const auto& op) { engine_->OnListCleared(op); });
    zritemlist::ItemList::SetItemRemovalHook(
        [this](const auto&, unsigned item, const auto& op) { engine_->OnItemRemoved(item, op); });
    Run({"bolt", "bolt#2", "nut", "washer", "frame/beam"});
  }
  ~SceneFollowingTest() override {
    zritemlist::ItemList::SetListClearedHook({});
    zritemlist::ItemList::SetItemRemovalHook({});
  }

  std::size_t Draw(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_); }
  const Part& DrawPart() { return parts_[Draw(parts_.size())]; }
  CalloutPtr DrawCallout() {
    const auto shown = Shown();
    return shown.empty() ? nullptr : shown[Draw(shown.size())];
  }
  unsigned DrawItem() {
    const auto ids = items_->GetItemIds();
    return ids.empty() ? 0 : ids[Draw(ids.size())];
  }

  void Edit() {
    const std::size_t kind = Draw(16);
    const auto operation = MakeOperation();
    EditItems(kind, operation);
    EditScene(kind, operation);
    zrk::RecordOperation(operation);
  }
  void EditItems(std::size_t kind, const OperationPtr& operation) {
    const Part& part = DrawPart();
    if (kind <= 2) itemList_->AddInstance(part.sbom, operation, false, {});
    if (kind == 3 || kind == 4) itemList_->RemoveInstance(part.sbom, operation);
    if (kind == 5) {
      items_->SetItemLabel(DrawItem(), std::to_string(Draw(50)), operation);
      items_->SetQuantity(DrawItem(), static_cast<unsigned>(Draw(50)), operation);
      items_->SetIndex(DrawItem(), static_cast<unsigned>(Draw(50)), operation);
    }
    if (kind == 6) {
      const unsigned item = DrawItem();
      MakeGenerator()->RemoveFromItemIds({item}, operation);
      itemList_->DeleteItem(item, operation);
    }
    if (kind == 7 && Draw(4) == 0) itemList_->ClearList(operation);
    unsigned item = 0;
    if (kind == 8 && items_->GetItemIdForInstance(part.sbom, item) && CarriersOf(item).empty()) {
      MakeGenerator()->AddOnItemIds({item}, {}, operation);
    }
  }
  void EditScene(std::size_t kind, const OperationPtr& operation) {
    const Part& part = DrawPart();
    const double way = static_cast<double>(Draw(1000)) / 7;
    if (kind == 9) SceneEdit::SetInstanceVisible(scene_, part.sbom, Draw(2) == 0, operation);
    if (kind == 10 || kind == 11) SceneEdit::MoveInstance(scene_, part.sbom, {way, way / 3, -way}, operation);
    // Assemblies go as a whole: a callout on an empty one has nothing to stand on and is refused when it comes back.
    const bool isTop = part.sbom->GetParent() == structure_->Root().sbom;
    if (kind == 12 && isTop) SceneEdit::RemoveInstance(scene_, part.sbom, operation);
    if (kind == 13) SceneEdit::RenameInstance(scene_, part.sbom, std::to_string(Draw(5)), operation);
    if (kind == 14 && Draw(2) == 0) AnnotationEdit::DeleteCallout(scene_, DrawCallout(), operation);
    if (kind == 15) AnnotationEdit::JoinCallouts(scene_, {DrawCallout(), DrawCallout()}, operation);
    if (kind == 14) AnnotationEdit::JoinCallouts(scene_, {DrawCallout(), DrawCallout(), DrawCallout()}, operation);
  }

  [[nodiscard]] CalloutSet CarriersOf(unsigned item) const {
    CalloutSet carriers;
    for (const auto& callout : Shown()) {
      if (callout->CarriesItemId(item)) carriers.insert(callout);
    }
    return carriers;
  }
  [[nodiscard]] static std::multiset<const void*> StandsOn(const CalloutPtr& callout) {
    std::multiset<const void*> instances;
    for (const auto& leader : callout->GetLeaders()) instances.insert(leader->GetSbomInstance().Get());
    return instances;
  }

  void ExpectLeadersFollowItems() {
    for (const auto& callout : Shown()) {
      const auto singles = zrtest::SinglesOf(callout);
      EXPECT_EQ(StandsOn(callout), StandsOn(singles.front())) << "the first member leads";
      for (const auto& leader : callout->GetLeaders()) {
        const auto shape = leader->GetShapeInstance();  // an assembly's leader has none
        EXPECT_TRUE(!shape || leader->IsVisible() == shape->IsVisible());
      }
      for (const auto& single : singles) {
        unsigned item = 0;
        PartSet group;
        ASSERT_TRUE(single->GetItemId(item));
        items_->GetInstances(item, group);
        EXPECT_FALSE(group.empty()) << "no item " << item;
        ExpectLeadersOn(group, *single);
      }
    }
  }
  void ExpectLeadersOn(const PartSet& group, const zrannotations::Callout& callout) const {
    PartSet missing = group;
    bool anyShown = false;
    for (const auto& leader : callout.GetLeaders()) {
      EXPECT_EQ(group.count(leader->GetSbomInstance()), 1u) << "a leader off its item";
      EXPECT_EQ(missing.erase(leader->GetSbomInstance()), 1u) << "two leaders on one instance";
      anyShown = anyShown || !leader->IsHidden();
    }
    EXPECT_TRUE(anyShown);
    if (GetParam() == Same::Apart) return;
    for (const auto& instance : missing) EXPECT_TRUE(SceneEdit::GetShapeInstances(scene_, instance).empty());
  }

  void ExpectExactRegistry() {
    zrtest::RegistryInvariants::Expected expected;
    expected.templates = {engine_->GetTemplate()};
    EXPECT_EQ(zrtest::RegistryInvariants(Watched()).Broken(expected), std::vector<std::string>());
    for (const auto& callout : Shown()) {
      EXPECT_EQ(engine_->IsAllowed(callout), IsAlone(callout)) << Describe(*callout);
    }
  }
  /// No other callout of the same item is filed on one of the callout's parts.
  [[nodiscard]] bool IsAlone(const CalloutPtr& callout) const {
    unsigned own = 0;
    static_cast<void>(callout->GetItemId(own));
    for (unsigned i = 0; i < callout->GetLeaderLineCount(true); ++i) {
      const auto id = callout->GetShapeInstanceIdAtPos(i);
      if (id.empty()) continue;
      CalloutSet filed;
      engine_->GetCalloutSetForSbomInstance(tree_->FindInstance(id), filed);
      for (const auto& other : filed) {
        unsigned item = 0;
        if (other != callout && other->GetItemId(item) && item == own) return false;
      }
    }
    return true;
  }

  [[nodiscard]] zrtest::WatchedScene Watched() const { return {scene_, tree_, items_, engine_}; }
  [[nodiscard]] std::string State() const { return Watched().State(parts_); }
  void Check(const std::string& expected) {
    ASSERT_EQ(State(), expected);
    ExpectLeadersFollowItems();
    ExpectExactRegistry();
    ASSERT_FALSE(HasFailure());
  }
  void Wander() {
    std::vector<std::string> states{State()};
    std::size_t at = 0;
    for (int step = 0; step < kSteps; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      const std::size_t choice = Draw(6);
      if (choice == 0 && at > 0) {
        ASSERT_TRUE(UndoHistory::Undo(scene_));
        --at;
      } else if (choice == 1 && at + 1 < states.size()) {
        ASSERT_TRUE(UndoHistory::Redo(scene_));
        ++at;
      } else {
        Edit();
        states.resize(++at);
        states.push_back(State());
      }
      ASSERT_NO_FATAL_FAILURE(Check(states[at]));
    }
    while (at + 1 < states.size()) {
      ASSERT_TRUE(UndoHistory::Redo(scene_));
      ASSERT_NO_FATAL_FAILURE(Check(states[++at]));
    }
    while (at > 0) {
      ASSERT_TRUE(UndoHistory::Undo(scene_));
      ASSERT_NO_FATAL_FAILURE(Check(states[--at]));
    }
  }

  std::vector<Part> parts_;
  std::mt19937 random_;
};

TEST_P(SceneFollowingTest, EveryStepOfARandomSequenceLeavesLeadersRegistryAndHistoryRight) {
  for (unsigned seed = 0; seed < SeedCount(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    random_.seed(seed);
    ASSERT_NO_FATAL_FAILURE(Wander());
    if (HasFailure()) return;
  }
}

TEST_P(SceneFollowingTest, AMovedAssemblyTakesLeadersAndLabelsAlong) {
  const auto onFrame = MakeCallout(zrtest::TextTemplate("frame"), Part{});
  AddAssemblyLeader(onFrame, PartOf("frame"));
  Add(onFrame);
  struct Place {
    double leader, label;
  };
  const auto placeOf = [](const CalloutPtr& callout) {
    return Place{callout->GetLeaders().front()->GetAnchor().y, callout->GetMarkupLabelPosition().y};
  };
  std::map<CalloutPtr, Place> before;
  for (const auto& callout : Shown()) before[callout] = placeOf(callout);
  SceneEdit::MoveInstance(scene_, PartOf("frame").sbom, {0, 7, 0}, nullptr);
  for (const auto& [callout, place] : before) {
    const double way = Describe(*callout).find("frame") == std::string::npos ? 0 : 7;
    EXPECT_DOUBLE_EQ(placeOf(callout).leader, place.leader + way) << Describe(*callout);
    EXPECT_DOUBLE_EQ(placeOf(callout).label, place.label + way) << Describe(*callout);
  }
}

TEST_P(SceneFollowingTest, AClearedListTakesItsCalloutsAndRedrawsOnce) {
  const auto note = AddCallout(zrtest::TextTemplate("Note"), parts_.front());
  const unsigned dirty = view_->GetDirtyCount();
  itemList_->ClearList(MakeOperation());
  EXPECT_EQ(Shown(), std::vector<CalloutPtr>{note});
  EXPECT_EQ(view_->GetDirtyCount(), dirty + 1);
  AddItem(parts_.front());
  itemList_->ClearList(nullptr);  // takes a row, but no callout
  EXPECT_EQ(view_->GetDirtyCount(), dirty + 1);
}

std::string NameOf(const testing::TestParamInfo<Same>& tested) {
  if (tested.param == Same::Apart) return "Apart";
  return tested.param == Same::Combine ? "Combine" : "DrawOne";
}

INSTANTIATE_TEST_SUITE_P(Settings, SceneFollowingTest, testing::Values(Same::Apart, Same::Combine, Same::DrawOne),
                         NameOf);

}  // namespace
