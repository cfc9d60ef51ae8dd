// Leaders that follow the group of instances of an item.
#include <zrk/MakeObject.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "support/GeneratorFixture.h"

namespace {

using zrk::UndoHistory;
using zrtest::GeneratorFixture;
using zrtest::Names;

struct GroupCase {
  const char* name;
  bool combine;
  bool drawOne;
  Names afterAdding;
  Names afterRemoving;
};

class ItemGroupLeadersTest : public GeneratorFixture, public ::testing::WithParamInterface<GroupCase> {
protected:
  ItemGroupLeadersTest() {
    engine_->SetCombineForSamePart(GetParam().combine);
    engine_->SetDrawOneForSamePart(GetParam().drawOne);
  }

  // The rows and the leaders must come back together.
  void ExpectUndoable(const Names& before) {
    const auto after = Describe();
    const auto rows = items_->GetItemIds();
    for (int round = 0; round < 2; ++round) {
      ASSERT_TRUE(UndoHistory::Undo(scene_));
      EXPECT_EQ(Describe(), before);
      ASSERT_TRUE(UndoHistory::Redo(scene_));
      EXPECT_EQ(Describe(), after);
      EXPECT_EQ(items_->GetItemIds(), rows);
    }
  }
};

TEST_P(ItemGroupLeadersTest, AddedInstancesGetLeadersInTheSameOperation) {
  Run({"bolt", "nut"});
  const Names before = Describe();
  const auto operation = MakeOperation();
  itemList_->AddInstance(PartOf("bolt#2").sbom, operation, false, {});
  EXPECT_EQ(Describe(), GetParam().afterAdding);
  EXPECT_EQ(CalloutsOn(PartOf("bolt#2")).size(), before == Describe() ? 0u : 1u);
  engine_->UpdateItemGroupCalloutLeaders(1, {PartOf("bolt#2").sbom, PartOf("bolt").sbom}, {}, operation);
  EXPECT_EQ(Describe(), GetParam().afterAdding);  // those that have a leader get no second one
  zrk::RecordOperation(operation);
  ExpectUndoable(before);
  UndoHistory::Undo(scene_);
  EXPECT_TRUE(CalloutsOn(PartOf("bolt#2")).empty());
}

TEST_P(ItemGroupLeadersTest, RemovedInstancesLoseTheirLeadersAndTheLastOneItsCallout) {
  Run({"bolt", "bolt#2"});
  const Names before = Describe();
  const auto operation = MakeOperation();
  engine_->UpdateItemGroupCalloutLeaders(1, {}, {PartOf("bolt").sbom, PartOf("nut").sbom}, operation);
  EXPECT_EQ(Describe(), GetParam().afterRemoving);
  EXPECT_TRUE(CalloutsOn(PartOf("bolt")).empty());
  EXPECT_EQ(CalloutsOn(PartOf("bolt#2")).size(), 1u);
  engine_->UpdateItemGroupCalloutLeaders(7, {}, {PartOf("bolt#2").sbom}, operation);
  EXPECT_EQ(Describe(), GetParam().afterRemoving);  // nothing carries that item
  zrk::RecordOperation(operation);
  ExpectUndoable(before);
  engine_->UpdateItemGroupCalloutLeaders(1, {}, {PartOf("bolt#2").sbom}, nullptr);
  EXPECT_EQ(Describe(), Names());
}

TEST_P(ItemGroupLeadersTest, WithoutInstancesOrOperationNothingIsRecorded) {
  Run({"bolt"});
  const auto operation = MakeOperation();
  engine_->UpdateItemGroupCalloutLeaders(1, {}, {}, operation);
  engine_->UpdateItemGroupCalloutLeaders(1, {PartOf("bolt").sbom}, {PartOf("nut").sbom}, operation);
  EXPECT_EQ(operation->GetStepCount(), 0u);
  itemList_->AddInstance(PartOf("bolt#2").sbom, nullptr, false, {});
  EXPECT_EQ(Shown().size(), 1u);
  EXPECT_EQ(RecordedCount(), 1u);
}

// The settings may have changed since, and the callout may be gone without a trace in the history.
TEST_P(ItemGroupLeadersTest, UndoOnlyPutsBackWhatTheStepsHold) {
  Run({"bolt", "bolt#2", "nut"});
  const Names before = Describe();
  const auto operation = MakeOperation();
  itemList_->RemoveInstance(PartOf("bolt#2").sbom, operation);
  zrk::RecordOperation(operation);
  engine_->SetCombineForSamePart(true);
  ASSERT_TRUE(UndoHistory::Undo(scene_));
  EXPECT_EQ(Describe(), before);
  ASSERT_TRUE(UndoHistory::Redo(scene_));
  for (const auto& callout : Shown()) Remove(callout);
  ASSERT_TRUE(UndoHistory::Undo(scene_));
  EXPECT_EQ(CalloutsOn(PartOf("bolt")).size(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, ItemGroupLeadersTest,
    ::testing::Values(GroupCase{"Apart", false, false, {"1: bolt", "2: nut"}, {"1: bolt#2"}},
                      GroupCase{"Combine", true, false, {"1: bolt bolt#2", "2: nut"}, {"1: bolt#2"}},
                      GroupCase{"DrawOne", false, true, {"1: bolt bolt#2*", "2: nut"}, {"1: bolt#2"}}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
