// The automatic run: what it makes of a selection, what it reports, and that undo and redo cover it.
#include <algorithm>
#include <cstdlib>
#include <iostream>

#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/ItemsListObserver.h>

#include "support/GeneratorFixture.h"

namespace {

using zrk::UndoHistory;
using zrtest::EventPtr;
using zrtest::GeneratorFixture;
using zrtest::Names;
using zrtest::TemplateBuilder;

enum class Template { Number, Note, Mass, None };
enum class Same { Apart, Combine, DrawOne };
using enum Template;
using enum Same;

struct RunCase {
  const char* name;
  Template content;
  Same same;
  Names items;  ///< Made before the run; with a dash before those that are not itemized.
  Names selection;
  Names shown;
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
    if (content == Note) engine_->SetTemplate(zrtest::TextTemplate("Note"));
    if (content == Mass)
      engine_->SetTemplate(TemplateBuilder().Property("Data", "Mass").Property("Data", "Colour").Build());
    if (content == None) engine_->SetTemplate(nullptr);
    engine_->SetCombineForSamePart(same == Combine);
    engine_->SetDrawOneForSamePart(same == DrawOne);
  }

  // Components and texts have no order of their own that a test could rely on; item numbers have.
  [[nodiscard]] Names Result(Template content) const {
    auto result = Describe();
    if (content != Number) std::sort(result.begin(), result.end());
    return result;
  }
};

class RunTableTest : public RunTest, public ::testing::WithParamInterface<std::tuple<RunCase, bool>> {
protected:
  RunTableTest() : RunTest({.manualTasks = std::get<1>(GetParam())}) {}
};

TEST_P(RunTableTest, MakesTheCalloutsOfEachCategoryInOneUndoableOperation) {
  const RunCase& run = std::get<0>(GetParam());
  for (const auto& item : run.items) {
    const bool itemized = item.front() != '-';
    const unsigned itemId = AddItemOf(itemized ? item : item.substr(1));
    if (!itemized) items_->SetItemized(itemId, false);
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

const RunCase kRuns[] = {
    {"OneCalloutAnInstance", Number, Apart, {}, {"bolt#2", "bolt"}, {"1: bolt", "1: bolt#2"}},
    {"CombinedLeaders", Number, Combine, {}, {"bolt", "bolt#2"}, {"1: bolt bolt#2"}},
    {"OneDrawnLeader", Number, DrawOne, {}, {"bolt", "bolt#2"}, {"1: bolt bolt#2*"}},
    {"InItemOrder", Number, Combine, {"nut", "bolt"}, {"bolt", "nut", "bolt#2"}, {"1: nut", "2: bolt bolt#2"}},
    {"NewItemsInSelectionOrder", Number, Apart, {}, {"nut", "bolt"}, {"1: nut", "2: bolt"}},
    {"SelectedTwice", Number, Apart, {}, {"nut", "nut"}, {"1: nut"}},
    {"EntriesWithoutInstance", Number, Apart, {}, {"", "nut", ""}, {"1: nut"}},
    {"NothingSelected", Number, Apart, {}, {}, {}, 0},
    {"NoTemplate", None, Apart, {}, {"nut"}, {}, 0},
    {"WeldMembersToTheirWeld", Number, Apart, {}, {"weld/rib", "weld/plate"}, {"1: weld"}},
    {"RowNotItemizedToItsParent", Number, Apart, {"frame", "-frame/beam"}, {"frame/beam"}, {"1: frame"}},
    {"NeitherRowItemized", Number, Apart, {"-frame", "-frame/beam"}, {"frame/beam"}, {}, 0},
    {"WithItsChildren", Number, Apart, kFrameItems, {"frame"}, {"1: frame", "2: frame/beam", "2: frame/beam#2"}},
    {"ChildrenWithoutItemsAreLeftOut", Number, Apart, {}, {"frame"}, {"1: frame"}},
    {"PartWithoutShapeGetsARowOnly", Number, Apart, {}, {"stub"}, {}},
    {"ByComponent", Note, Combine, {}, {"bolt", "washer", "bolt#2", "nut"}, {"Note: bolt bolt#2", "Note: nut washer"}},
    {"PlainAssemblyStandsForItself", Note, Combine, kFrameItems, {"frame"}, {"Note: frame"}},
    {"ByFirstProperty", Mass, Combine, {}, {"bolt", "washer", "nut", "frame/beam"}, {"5: bolt nut", "75: washer"}},
    {"NoPartWithTheProperty", Mass, Apart, {}, {"bolt#2"}, {}, 0},
};

INSTANTIATE_TEST_SUITE_P(Selections, RunTableTest, ::testing::Combine(::testing::ValuesIn(kRuns), ::testing::Bool()),
                         [](const auto& tested) {
                           return std::string(std::get<0>(tested.param).name) +
                                  (std::get<1>(tested.param) ? "Manual" : "Threads");
                         });

// The switch is read once a process, so this needs one of its own.
TEST_F(RunTest, TheEnvironmentTurnsProcessPlanGroupingOff) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto runWithSwitch = [this] {
    setenv("FOLIANT_DISABLE_MPM_CALLOUT_GROUPING", "1", 1);
    Prepare(Note, Combine);
    Run({"bolt", "washer", "bolt#2", "nut"});
    for (const auto& line : Result(Note)) std::cerr << line << ";";
    std::_Exit(0);
  };
  EXPECT_EXIT(runWithSwitch(), ::testing::ExitedWithCode(0), "^Note: bolt bolt#2;Note: nut;Note: washer;$");
}

struct WithoutListTest : RunTest {
  WithoutListTest() : RunTest({.withItemList = false}) {}
};

TEST_F(WithoutListTest, OnlyTemplatesWithoutItemNumbersMakeCallouts) {
  const auto event = zrk::MakeObject<zrk::AsyncEvent>();
  Run({"bolt"}, event);
  EXPECT_EQ(event->GetCompleteCount(), 1u);
  EXPECT_EQ(RecordedCount(), 0u);
  Prepare(Note, Apart);
  Run({"bolt"});
  EXPECT_EQ(Describe(), Names({"Note: bolt"}));
}

TEST_F(RunTest, ProgressRisesOverAllPasses) {
  Prepare(Note, Combine);
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
  engine_->SetTemplate(TemplateBuilder().Build());
  Run({"frame"});
  EXPECT_EQ(Describe().back(), "Text: frame");  // the template has no text
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

}  // namespace
