// The automatic run: what it makes of a selection, what it reports, and that undo and redo cover it.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>

#include <zrk/MakeObject.h>
#include <zrk/MemoryPool.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/ItemsListObserver.h>

#include "support/GeneratorFixture.h"

namespace {

using zrk::MemoryPool;
using zrk::UndoHistory;
using zrtest::EventPtr;
using zrtest::GeneratorFixture;
using zrtest::Names;
using zrtest::TemplateBuilder;

enum class Template { Number, Note, Mass, None };
enum class Same { Apart, Combine, DrawOne };

struct RunCase {
  const char* name;
  Names selection;
  Names shown;
  Names items = {};
  Same same = Same::Apart;
  Template content = Template::Number;
  Names notItemized = {};
  unsigned operations = 1;
};

class RunTest : public GeneratorFixture {
protected:
  explicit RunTest(const zrtest::SceneOptions& options = {}) : GeneratorFixture(options) {
    SetProperty("nut", "BrindleMPMLink", "operationToPartUniqueId", "op10");
    SetProperty("washer", "BrindleMPMLink", "operationToPartUniqueId", "op10");
    for (const char* light : {"bolt", "nut"}) SetProperty(light, "Data", "Mass", "5");
    SetProperty("washer", "Data", "Mass", "7");
    SetProperty("washer", "Data", "Colour", "5");
  }

  void Prepare(Template content, Same same) {
    if (content == Template::Note) engine_->SetTemplate(zrtest::TextTemplate("Note"));
    if (content == Template::Mass)
      engine_->SetTemplate(TemplateBuilder().Property("Data", "Mass").Property("Data", "Colour").Build());
    if (content == Template::None) engine_->SetTemplate(nullptr);
    engine_->SetCombineForSamePart(same == Same::Combine);
    engine_->SetDrawOneForSamePart(same == Same::DrawOne);
  }

  // Components and texts have no order of their own that a test could rely on; item numbers have.
  [[nodiscard]] Names Result(Template content) const {
    auto result = Describe();
    if (content != Template::Number) std::sort(result.begin(), result.end());
    return result;
  }
};

class RunTableTest : public RunTest, public ::testing::WithParamInterface<std::tuple<RunCase, bool>> {
protected:
  RunTableTest() : RunTest({.manualTasks = std::get<1>(GetParam())}) {}
};

TEST_P(RunTableTest, MakesTheCalloutsOfEachCategoryInOneUndoableOperation) {
  const RunCase& run = std::get<0>(GetParam());
  for (const auto& item : run.items) AddItemOf(item);
  unsigned itemId = 0;
  for (const auto& item : run.notItemized) {
    ASSERT_TRUE(items_->GetItemIdForInstance(PartOf(item).sbom, itemId));
    items_->SetItemized(itemId, false);
  }
  Prepare(run.content, run.same);
  const auto itemsBefore = items_->GetItemIds();
  const auto event = zrk::MakeObject<zrk::AsyncEvent>();
  Run(run.selection, event);
  EXPECT_EQ(event->GetCompleteCount(), 1u);
  EXPECT_EQ(Result(run.content), run.shown);
  ASSERT_EQ(RecordedCount(), run.operations);
  if (run.operations == 0) return;
  const auto itemsAfter = items_->GetItemIds();
  EXPECT_EQ(UndoHistory::GetLast(scene_)->GetName(), "Create Callouts");
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(UndoHistory::Undo(scene_));
    EXPECT_EQ(Describe(), Names());
    EXPECT_EQ(items_->GetItemIds(), itemsBefore);
    ASSERT_TRUE(UndoHistory::Redo(scene_));
    EXPECT_EQ(Result(run.content), run.shown);
    EXPECT_EQ(items_->GetItemIds(), itemsAfter);
  }
  UndoHistory::Undo(scene_);
  Run(run.selection);
  EXPECT_EQ(Describe().size(), run.shown.size());
}

const Names kFrameItems = {"frame", "frame/beam", "frame/beam#2"};

INSTANTIATE_TEST_SUITE_P(
    Selections, RunTableTest,
    ::testing::Combine(
        ::testing::Values(
            RunCase{"OneCalloutAnInstance", {"bolt#2", "bolt"}, {"1: bolt", "1: bolt#2"}},
            RunCase{"CombinedLeaders", {"bolt", "bolt#2"}, {"1: bolt bolt#2"}, {}, Same::Combine},
            RunCase{"OneDrawnLeader", {"bolt", "bolt#2"}, {"1: bolt bolt#2*"}, {}, Same::DrawOne},
            RunCase{"PassesInItemOrder",
                    {"bolt", "nut", "bolt#2"},
                    {"2: nut", "3: bolt bolt#2"},
                    {"washer", "nut", "bolt"},
                    Same::Combine},
            RunCase{"NewItemsInSelectionOrder", {"nut", "bolt"}, {"1: nut", "2: bolt"}},
            RunCase{"SelectedTwice", {"nut", "nut"}, {"1: nut"}},
            RunCase{"EntriesWithoutInstance", {"", "nut", ""}, {"1: nut"}},
            RunCase{"NothingSelected", {}, {}, {}, Same::Apart, Template::Number, {}, 0},
            RunCase{"NoTemplate", {"nut"}, {}, {}, Same::Apart, Template::None, {}, 0},
            RunCase{"WeldMembersToTheirWeld", {"weld/rib", "weld/plate"}, {"1: weld"}},
            RunCase{"RowNotItemizedToItsParent",
                    {"frame/beam"},
                    {"1: frame"},
                    {"frame", "frame/beam"},
                    Same::Apart,
                    Template::Number,
                    {"frame/beam"}},
            RunCase{"NeitherRowItemized",
                    {"frame/beam"},
                    {},
                    {"frame", "frame/beam"},
                    Same::Apart,
                    Template::Number,
                    {"frame", "frame/beam"},
                    0},
            RunCase{
                "AssemblyWithItsChildren", {"frame"}, {"1: frame", "2: frame/beam", "2: frame/beam#2"}, kFrameItems},
            RunCase{"ChildrenWithoutItemsAreLeftOut", {"frame"}, {"1: frame"}},
            RunCase{"PartWithoutShapeGetsARowOnly", {"stub"}, {}},
            RunCase{"ByComponent",
                    {"bolt", "washer", "bolt#2", "nut"},
                    {"Note: bolt bolt#2", "Note: nut washer"},
                    {},
                    Same::Combine,
                    Template::Note},
            RunCase{
                "PlainAssemblyStandsForItself", {"frame"}, {"Note: frame"}, kFrameItems, Same::Combine, Template::Note},
            RunCase{"ByFirstPropertyOfTheTemplate",
                    {"bolt", "washer", "nut", "frame/beam"},
                    {"5: bolt nut", "75: washer"},
                    {},
                    Same::Combine,
                    Template::Mass},
            RunCase{"NoPartWithTheProperty", {"bolt#2"}, {}, {}, Same::Apart, Template::Mass, {}, 0}),
        ::testing::Bool()),
    [](const auto& tested) {
      return std::string(std::get<0>(tested.param).name) + (std::get<1>(tested.param) ? "Manual" : "Threads");
    });

// The switch is read once a process, so this needs one of its own.
TEST_F(RunTest, TheEnvironmentTurnsProcessPlanGroupingOff) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto runWithSwitch = [this] {
    setenv("FOLIANT_DISABLE_MPM_CALLOUT_GROUPING", "1", 1);
    Prepare(Template::Note, Same::Combine);
    Run({"bolt", "washer", "bolt#2", "nut"});
    for (const auto& line : Result(Template::Note)) std::cerr << line << ";";
    std::_Exit(0);
  };
  EXPECT_EXIT(runWithSwitch(), ::testing::ExitedWithCode(0), "^Note: bolt bolt#2;Note: nut;Note: washer;$");
}

class WithoutListTest : public RunTest {
protected:
  WithoutListTest() : RunTest({.withItemList = false}) {}
};

TEST_F(WithoutListTest, OnlyTemplatesWithoutItemNumbersMakeCallouts) {
  const auto event = zrk::MakeObject<zrk::AsyncEvent>();
  Run({"bolt"}, event);
  EXPECT_EQ(event->GetCompleteCount(), 1u);
  EXPECT_EQ(RecordedCount(), 0u);
  Prepare(Template::Note, Same::Apart);
  Run({"bolt"});
  EXPECT_EQ(Describe(), Names({"Note: bolt"}));
}

TEST_F(RunTest, ProgressRisesOverAllPasses) {
  Prepare(Template::Note, Same::Combine);
  const auto progressOf = [this](const Names& names) {
    const auto event = zrk::MakeObject<zrk::AsyncEvent>();
    Run(names, event);
    return event->GetProgress();
  };
  EXPECT_EQ(progressOf(Names(250, "bolt")), std::vector<unsigned char>({0, 40, 80}));
  Names twoParts(100, "bolt");
  twoParts.push_back("frame");
  EXPECT_EQ(progressOf(twoParts), std::vector<unsigned char>({0, 50, 99}));
}

TEST_F(RunTest, ASecondRunAddsNoSecondCalloutOfAnItemOnAPart) {
  Run({"bolt", "nut"});
  Run({"bolt", "nut", "washer"});
  EXPECT_EQ(Describe(), Names({"1: bolt", "2: nut", "3: washer"}));
}

TEST_F(RunTest, ACalloutWithoutTextOfItsTemplateShowsThePredefinedText) {
  engine_->SetTemplate(zrtest::TemplateBuilder().Build());
  Run({"bolt"});
  EXPECT_EQ(Describe(), Names({"Text: bolt"}));
}

// What was on show, and whether the run had ended, whenever the list told of a change.
struct ListRecorder : zrk::illustration::ItemsListObserver {
  void OnItemAdded(unsigned) override {
    shown.push_back(annoSet->GetCount());
    completed = completed || event->GetCompleteCount() != 0;
  }
  EventPtr event = zrk::MakeObject<zrk::AsyncEvent>();
  du::SmartPtr<zrk::AnnoSet> annoSet;
  std::vector<std::size_t> shown;
  bool completed = false;
};

TEST_F(RunTest, ObserversOfTheListHearOfTheRunAtItsEndAndBeforeItCompletes) {
  const auto recorder = zrk::MakeObject<ListRecorder>();
  recorder->annoSet = scene_->GetAnnoSet();
  items_->RegisterObserver(recorder);
  Run({"bolt", "nut", "washer"}, recorder->event);
  items_->UnregisterObserver(recorder);
  EXPECT_EQ(recorder->shown, std::vector<std::size_t>(3, 3));
  EXPECT_FALSE(recorder->completed);
}

TEST_F(RunTest, ARunThatOutlivesItsSceneMakesNothingAndStillCompletes) {
  const auto event = zrk::MakeObject<zrk::AsyncEvent>();
  zrcallouts::CalloutGenerator::CreateCallouts(engine_, Select({"bolt"}), event);
  EXPECT_EQ(event->GetCompleteCount(), 0u);
  CloseScene();
  EXPECT_EQ(event->GetCompleteCount(), 1u);
  EXPECT_EQ(RecordedCount(), 0u);
  EXPECT_TRUE(CalloutsOn(PartOf("bolt")).empty());
}

TEST_F(RunTest, AFailingAllocationLeavesNothingHalfDoneBehind) {
  const Names selection = {"bolt", "bolt#2", "nut"};
  Prepare(Template::Number, Same::Combine);
  unsigned faults = 0;
  for (unsigned successes = 0; faults == successes; ++successes) {
    const auto event = zrk::MakeObject<zrk::AsyncEvent>();
    MemoryPool::FailAfter(successes, 1);
    Run(selection, event);
    faults += static_cast<unsigned>(MemoryPool::GetInjectedCount());
    MemoryPool::FailNext(0);
    EXPECT_EQ(event->GetCompleteCount(), 1u) << successes;
    for (const auto& callout : Shown()) EXPECT_FALSE(TextOf(callout).empty()) << successes;
    if (RecordedCount() == 0) {
      for (const auto& callout : Shown()) Remove(callout);
    }
    while (UndoHistory::Undo(scene_)) {
    }
    EXPECT_EQ(Describe(), Names()) << successes;
    UndoHistory::Clear(scene_);
    itemList_->ClearList(nullptr);
    ASSERT_TRUE(CalloutsOn(PartOf("bolt")).empty()) << successes;
  }
  EXPECT_GE(faults, 4u);  // generator, operation and two callouts
  Run(selection);
  EXPECT_EQ(Describe().size(), 2u);
}

TEST_F(RunTest, TenThousandPartsInTwoThousandItemsAreCalledOut) {
  constexpr std::size_t kParts = 10000;
  constexpr std::size_t kComponents = 2000;
  Names names;
  const auto add = [&](std::size_t i) {
    const std::string name = "part" + std::to_string(i % kComponents);
    const auto part = structure_->AddPart(structure_->Root(), name, {i % 100 * 2.0, i / 100 * 2.0, 0.0});
    names.push_back(part.Id().substr(std::string("product/").size()));
  };
  for (std::size_t i = 0; i < kParts; ++i) add(i);
  Prepare(Template::Number, Same::Combine);
  const auto recorder = zrk::MakeObject<ListRecorder>();
  recorder->annoSet = scene_->GetAnnoSet();
  items_->RegisterObserver(recorder);
  const auto start = std::chrono::steady_clock::now();
  Run(names);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::cout << kParts << " parts, " << kComponents << " items: " << seconds.count() << " s\n";
  items_->UnregisterObserver(recorder);
  EXPECT_EQ(recorder->shown, std::vector<std::size_t>(kComponents, kComponents)) << "told once an item, at the end";
  const auto shown = Shown();
  ASSERT_EQ(shown.size(), kComponents);
  const auto isComplete = [](const auto& callout) { return callout->GetLeaders().size() == kParts / kComponents; };
  EXPECT_TRUE(std::all_of(shown.begin(), shown.end(), isComplete));
  EXPECT_EQ(TextOf(shown.back()), std::to_string(kComponents));
}

}  // namespace
