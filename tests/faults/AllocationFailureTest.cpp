// Memory runs out at every place in turn, once and from there on. Whatever the operation is: nothing is left behind,
// nothing stays locked, and once there is memory again the operation does what it would have done at once.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <new>

#include <du/Tracer.h>
#include <zrk/MemoryPool.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/PenPool.h>

#include "faults/AllocationFaults.h"
#include "faults/FaultStage.h"

namespace {

using zrk::illustration::PenPool;
using zrtest::AllocationFaults;
using zrtest::FaultStage;
using zrtest::Memory;
using Step = void (FaultStage::*)();

struct Scenario {
  const char* name;
  Step prepare;
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

  /// What the scenario gives when nothing fails.
  std::string RunUndisturbed() {
    FaultStage stage;
    (stage.*GetParam().prepare)();
    (stage.*GetParam().operate)();
    return stage.State();
  }

  /// True when the fault was met.
  bool RunWithFault(Memory memory, unsigned successes, unsigned failures, const std::string& expected) {
    FaultStage stage;
    (stage.*GetParam().prepare)();
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
      (stage.*GetParam().prepare)();
      told = true;
    }
    if (told) (stage.*GetParam().operate)();
    EXPECT_EQ(stage.State(), expected) << "told: " << told;
    return injected > 0;
  }

  unsigned CountAllocations(Memory memory) {
    FaultStage stage;
    (stage.*GetParam().prepare)();
    const AllocationFaults none(memory, 0, 0);
    (stage.*GetParam().operate)();
    return static_cast<unsigned>(none.GetSeenCount());
  }

  void FailEverywhere(Memory memory, unsigned failures);
};

void AllocationFailureTest::FailEverywhere(Memory memory, unsigned failures) {
  const std::string expected = RunUndisturbed();
  EXPECT_EQ(RunUndisturbed(), expected);
  const unsigned places = CountAllocations(memory);
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

TEST_P(AllocationFailureTest, LeavesNothingBehindAndSucceedsAfterwards) {
  for (const unsigned failures : {1u, AllocationFaults::kForever}) {
    SCOPED_TRACE(failures == 1 ? "one fault" : "no memory any more");
    for (const Memory memory : {Memory::Pool, Memory::Ordinary, Memory::OnBehalf}) FailEverywhere(memory, failures);
  }
}

using S = FaultStage;

INSTANTIATE_TEST_SUITE_P(
    Scenarios, AllocationFailureTest,
    testing::Values(Scenario{"EngineIsMade", &S::StartEmpty, &S::CreateEngine, {1, 3, 10}},
                    Scenario{"RunApart", &S::StartEmpty, &S::Generate, {6, 26, 26}},
                    Scenario{"RunCombined", &S::CombineLeaders, &S::Generate, {6, 25, 25}},
                    Scenario{"RunWithHiddenLeaders", &S::HideLeaders, &S::Generate, {6, 26, 25}},
                    Scenario{"PlainRun", &S::UsePlainTemplate, &S::Generate, {6, 25, 30}},
                    Scenario{"RunByProperty", &S::UsePropertyTemplate, &S::Generate, {4, 25, 28}},
                    Scenario{"SecondRun", &S::GenerateApart, &S::GenerateAgain, {4, 26, 34}},
                    Scenario{"ByItem", &S::GenerateApart, &S::GenerateByItem, {3, 26, 43}},
                    Scenario{"ByHand", &S::GenerateApart, &S::GenerateByHand, {4, 26, 26}},
                    Scenario{"MadeElsewhere", &S::GenerateApart, &S::AddMadeCallouts, {2, 6, 24}},
                    Scenario{"Symbols", &S::AddSymbol, &S::CallOutSymbols, {3, 26, 30}},
                    Scenario{"Arrival", &S::PrepareArrival, &S::Arrive, {0, 4, 8}},
                    Scenario{"CombinedArrival", &S::PrepareCombinedArrival, &S::Arrive, {0, 4, 20}},
                    Scenario{"InsetArrival", &S::PrepareInset, &S::Arrive, {0, 3, 4}},
                    Scenario{"Removal", &S::GenerateCombined, &S::Leave, {0, 0, 4}},
                    Scenario{"Labels", &S::GenerateByProperty, &S::RegenerateLabels, {0, 9, 9}},
                    Scenario{"Template", &S::GenerateApart, &S::ChangeTemplate, {0, 4, 7}},
                    Scenario{"Language", &S::GenerateApart, &S::ChangeLanguage, {0, 4, 1}},
                    Scenario{"InstancesLeave", &S::GenerateCombined, &S::RemoveFromItem, {0, 1, 4}},
                    Scenario{"InstancesLeaveMembers", &S::GenerateAndJoin, &S::RemoveFromItem, {4, 6, 18}},
                    Scenario{"InstancesJoin", &S::GenerateCombined, &S::JoinItem, {3, 9, 26}},
                    Scenario{"InstancesJoinMembers", &S::GenerateAndJoin, &S::JoinItem, {4, 14, 28}},
                    Scenario{"ItemGoes", &S::GenerateCombined, &S::RemoveItem, {0, 2, 8}},
                    Scenario{"ItemOfMembersGoes", &S::GenerateAndJoin, &S::RemoveItem, {3, 6, 31}},
                    Scenario{"ListCleared", &S::GenerateApart, &S::ClearItems, {0, 3, 17}},
                    Scenario{"Renumbering", &S::GenerateAndJoin, &S::RenumberItems, {0, 4, 10}},
                    Scenario{"Queries", &S::GenerateAndJoin, &S::Query, {0, 20, 0}},
                    Scenario{"QueriesAfterChanges", &S::ChangeItemNumbers, &S::Query, {0, 13, 3}},
                    Scenario{"Move", &S::GenerateInset, &S::MovePart, {0, 4, 4}},
                    Scenario{"Hide", &S::GenerateCombined, &S::HidePart, {0, 3, 6}},
                    Scenario{"ShapeGoes", &S::GenerateApart, &S::RemoveShape, {0, 0, 0}},
                    Scenario{"Anchors", &S::GenerateHidden, &S::PlaceAnchors, {3, 8, 34}},
                    Scenario{"HiddenParts", &S::MarkHiddenParts, &S::EvaluateHidden, {3, 15, 28}},
                    Scenario{"DrawWhenHidden", &S::MarkHiddenParts, &S::SwitchDrawWhenHidden, {4, 18, 30}},
                    Scenario{"InsetChanges", &S::GenerateInset, &S::ChangeInset, {0, 3, 4}},
                    Scenario{"SymbolGoes", &S::AddSymbolCallouts, &S::DeleteSymbol, {0, 0, 4}},
                    Scenario{"Alignment", &S::GenerateApart, &S::AlignLabels, {3, 3, 12}},
                    Scenario{"Arranging", &S::GenerateApart, &S::ArrangeLabels, {1, 4, 4}},
                    Scenario{"Spreading", &S::GenerateApart, &S::SpreadLabels, {0, 4, 4}},
                    Scenario{"SheetAlignment", &S::StartEmpty, &S::AlignSheet, {0, 3, 4}},
                    Scenario{"SheetCallout", &S::GenerateApart, &S::CreateOnSheet, {1, 2, 4}},
                    Scenario{"SheetLabel", &S::GenerateApart, &S::UpdateSheet, {0, 1, 4}},
                    Scenario{"DroppedPicks", &S::HoldPicks, &S::DropPicks, {3, 4, 4}},
                    Scenario{"UndoneLeaders", &S::JoinItemInOperation, &S::UndoAndRedo, {0, 10, 34}},
                    Scenario{"Closing", &S::GenerateInset, &S::Destroy, {0, 2, 0}}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
