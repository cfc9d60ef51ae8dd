// Memory runs out at every place in turn, once and from there on. Whatever the operation is: nothing is left behind,
// nothing stays locked, and once there is memory again the operation does what it would have done at once.
#include <algorithm>
#include <cstdlib>
#include <new>

#include <du/Tracer.h>
#include <zrk/MemoryPool.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/PenPool.h>

#include "faults/AllocationFaults.h"
#include "faults/FaultOperations.h"

namespace {

using zrk::illustration::PenPool;
using zrtest::AllocationFaults;
using zrtest::Memory;
using S = zrtest::FaultOperations;
using Step = void (S::*)();

struct Scenario {
  const char* name;
  std::vector<Step> preparation;
  Step operate;
  unsigned floors[3];  ///< Of each kind of memory at least so many places must fail.
};

constexpr unsigned kPlaces = 50;

/// How many places of a scenario fail, spread evenly over all of them.
unsigned PlaceCount() {
  const char* const given = std::getenv("ZR_TEST_FAULTS");
  return given ? static_cast<unsigned>(std::atoi(given)) : kPlaces;
}

long CountLive() {
  static_cast<void>(du::Tracer::TakeEntries());
  return AllocationFaults::GetLiveCount();
}

const std::string kNames[] = {"pool allocation ", "ordinary allocation ", "allocation on behalf "};

class AllocationFailureTest : public testing::TestWithParam<Scenario> {
protected:
  // Stays for the rest of the process.
  static void SetUpTestSuite() { static_cast<void>(PenPool::GetPenPool()->UsePen(PenPool::PEN_THIN_STR)); }

  static void Prepare(S& stage) {
    for (const Step step : GetParam().preparation) (stage.*step)();
  }
  /// The state that the scenario ends in when nothing fails, and how many allocations could have failed.
  static std::pair<std::string, unsigned> RunUndisturbed(Memory memory) {
    S stage;
    Prepare(stage);
    const AllocationFaults none(memory, 0, 0);
    (stage.*GetParam().operate)();
    const auto allocations = static_cast<unsigned>(none.GetSeenCount());
    return {stage.State(), allocations};
  }

  /// True when the fault was met.
  bool RunWithFault(Memory memory, unsigned successes, unsigned failures, const std::string& expected) {
    S stage;
    Prepare(stage);
    bool told = false;
    std::size_t injected = 0;
    {
      const AllocationFaults faults(memory, successes, failures);
      try {
        (stage.*GetParam().operate)();
      } catch (const std::bad_alloc&) {
        told = true;
      }
      injected = faults.GetInjectedCount();
    }
    stage.RunTasks();
    if (told && memory != Memory::OnBehalf) stage.TakeBack();
    stage.ExpectIdle();
    if (memory == Memory::OnBehalf) return injected > 0;
    // An empty pool is told to nobody: what needs an object is left out, until the user starts over.
    if (!told && injected > 0 && memory == Memory::Pool) {
      stage.TakeBack();
      stage.Clear();
      Prepare(stage);
      told = true;
    }
    if (told) (stage.*GetParam().operate)();
    EXPECT_EQ(stage.State(), expected) << "told: " << told;
    return injected > 0;
  }

  void FailEverywhere(Memory memory, unsigned failures) {
    const auto [expected, places] = RunUndisturbed(memory);
    EXPECT_EQ(RunUndisturbed(memory).first, expected);
    const unsigned stride = std::max(1u, places / PlaceCount());
    unsigned injected = 0;
    for (unsigned place = 0; place < places && !HasFailure(); place += stride) {
      SCOPED_TRACE(kNames[static_cast<int>(memory)] + std::to_string(place));
      const long liveBefore = CountLive();
      const std::size_t poolBefore = zrk::MemoryPool::GetLiveCount();
      if (RunWithFault(memory, place, failures, expected)) ++injected;
      EXPECT_EQ(zrk::MemoryPool::GetLiveCount(), poolBefore);
      if (CountLive() == liveBefore) continue;
      const long liveAfterFirst = CountLive();  // the host keeps every text it has ever seen: only once, then
      RunWithFault(memory, place, failures, expected);
      EXPECT_EQ(CountLive(), liveAfterFirst);
    }
    EXPECT_GE(injected, GetParam().floors[static_cast<int>(memory)] * std::min(PlaceCount(), kPlaces) / kPlaces);
  }
};

TEST_P(AllocationFailureTest, LeavesNothingBehindAndSucceedsAfterwards) {
  for (const unsigned failures : {1u, AllocationFaults::kForever}) {
    SCOPED_TRACE(failures == 1 ? "one fault" : "no memory any more");
    for (const Memory memory : {Memory::Pool, Memory::Ordinary, Memory::OnBehalf}) FailEverywhere(memory, failures);
  }
}

const Scenario kScenarios[] = {
    {"EngineIsMade", {}, &S::CreateEngine, {1, 3, 10}},
    {"RunApart", {}, &S::Generate, {6, 26, 26}},
    {"RunCombined", {&S::CombineLeaders}, &S::Generate, {6, 25, 25}},
    {"RunWithHiddenLeaders", {&S::HideLeaders}, &S::Generate, {6, 26, 25}},
    {"PlainRun", {&S::UsePlainTemplate}, &S::Generate, {6, 25, 30}},
    {"RunByProperty", {&S::UsePropertyTemplate}, &S::Generate, {4, 25, 28}},
    {"SecondRun", {&S::Generate}, &S::GenerateAgain, {4, 26, 34}},
    {"ByItem", {&S::Generate}, &S::GenerateByItem, {3, 26, 43}},
    {"ByHand", {&S::Generate}, &S::GenerateByHand, {4, 26, 26}},
    {"MadeElsewhere", {&S::Generate}, &S::AddMadeCallouts, {2, 6, 24}},
    {"Symbols", {&S::Generate, &S::AddSymbol}, &S::CallOutSymbols, {3, 26, 30}},
    {"Arrival", {&S::Generate, &S::UsePropertyTemplate, &S::PrepareArrival}, &S::Arrive, {0, 4, 8}},
    {"CombinedArrival", {&S::PrepareCombinedArrival}, &S::Arrive, {0, 4, 20}},
    {"InsetArrival", {&S::Generate, &S::PrepareInset}, &S::Arrive, {0, 3, 4}},
    {"Removal", {&S::CombineLeaders, &S::Generate}, &S::Leave, {0, 0, 4}},
    {"Labels", {&S::UsePropertyTemplate, &S::Generate}, &S::RegenerateLabels, {0, 9, 9}},
    {"Template", {&S::Generate}, &S::ChangeTemplate, {0, 4, 7}},
    {"Language", {&S::Generate}, &S::ChangeLanguage, {0, 4, 1}},
    {"InstancesLeave", {&S::CombineLeaders, &S::Generate}, &S::RemoveFromItem, {0, 1, 4}},
    {"InstancesLeaveMembers", {&S::CombineLeaders, &S::Generate, &S::Join}, &S::RemoveFromItem, {4, 6, 18}},
    {"InstancesJoin", {&S::CombineLeaders, &S::Generate}, &S::JoinItem, {3, 9, 26}},
    {"InstancesJoinMembers", {&S::CombineLeaders, &S::Generate, &S::Join}, &S::JoinItem, {4, 14, 28}},
    {"ItemGoes", {&S::CombineLeaders, &S::Generate}, &S::RemoveItem, {0, 2, 8}},
    {"ItemOfMembersGoes", {&S::CombineLeaders, &S::Generate, &S::Join}, &S::RemoveItem, {3, 6, 31}},
    {"ListCleared", {&S::Generate}, &S::ClearItems, {0, 3, 17}},
    {"Renumbering", {&S::CombineLeaders, &S::Generate, &S::Join}, &S::RenumberItems, {0, 4, 10}},
    {"Queries", {&S::CombineLeaders, &S::Generate, &S::Join}, &S::Query, {0, 20, 0}},
    {"QueriesAfterChanges", {&S::Generate, &S::ChangeItemNumbers}, &S::Query, {0, 13, 3}},
    {"Move", {&S::Generate, &S::ShowInset}, &S::MovePart, {0, 4, 4}},
    {"Hide", {&S::CombineLeaders, &S::Generate}, &S::HidePart, {0, 3, 6}},
    {"ShapeGoes", {&S::Generate}, &S::RemoveShape, {0, 0, 0}},
    {"Anchors", {&S::HideLeaders, &S::Generate}, &S::PlaceAnchors, {3, 8, 34}},
    {"HiddenParts", {&S::HideLeaders, &S::Generate, &S::LookAway}, &S::EvaluateHidden, {3, 15, 28}},
    {"DrawWhenHidden", {&S::HideLeaders, &S::Generate, &S::LookAway}, &S::SwitchDrawWhenHidden, {4, 18, 30}},
    {"InsetChanges", {&S::Generate, &S::ShowInset}, &S::ChangeInset, {0, 3, 4}},
    {"SymbolGoes", {&S::Generate, &S::AddSymbol, &S::CallOutSymbols}, &S::DeleteSymbol, {0, 0, 4}},
    {"Alignment", {&S::Generate}, &S::AlignLabels, {3, 3, 12}},
    {"Arranging", {&S::Generate}, &S::ArrangeLabels, {1, 4, 4}},
    {"Spreading", {&S::Generate}, &S::SpreadLabels, {0, 4, 4}},
    {"SheetAlignment", {}, &S::AlignSheet, {0, 3, 4}},
    {"SheetCallout", {&S::Generate}, &S::CreateOnSheet, {1, 2, 4}},
    {"SheetLabel", {&S::Generate}, &S::UpdateSheet, {0, 1, 4}},
    {"DroppedPicks", {&S::HideLeaders, &S::HoldPicks}, &S::DropPicks, {3, 4, 4}},
    {"UndoneLeaders",
     {&S::CombineLeaders, &S::Generate, &S::Join, &S::JoinItemInOperation},
     &S::UndoAndRedo,
     {0, 10, 34}},
    {"Closing", {&S::Generate, &S::ShowInset}, &S::Destroy, {0, 2, 0}},
};

INSTANTIATE_TEST_SUITE_P(Scenarios, AllocationFailureTest, testing::ValuesIn(kScenarios),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
