#include "layout/placement/SlotMatching.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "layout/Requests.h"
#include "layout/placement/Audit.h"
#include "layout/placement/LocalSearch.h"
#include "layout/placement/Relaxation.h"

namespace zrcallouts::placement {

namespace {

RingPlan PlanFor(const Scene& scene, int rings) {
  return {scene.model.Grown(scene.clearance), {rings, rings, rings, rings}, scene.gap, scene.gap / 2};
}

/// Item i on slot 3i: a valid seating without any sense.
Seating ScatteredSeating(const Scene& scene, const RingPlan& plan) {
  std::vector<Seat> slots = MakeSlots(scene, plan);
  EXPECT_LE(3 * scene.items.size(), slots.size());
  Seating seating{plan.frame, std::vector<std::size_t>(scene.items.size()), {}, {}};
  std::iota(seating.items.begin(), seating.items.end(), std::size_t{0});
  for (std::size_t i = 0; i < scene.items.size(); ++i) seating.seats.push_back(slots[3 * i]);
  for (std::size_t k = 0; k < slots.size(); ++k)
    if (k % 3 != 0 || k / 3 >= scene.items.size()) seating.free.push_back(slots[k]);
  return seating;
}

class RingCounts : public ::testing::TestWithParam<int> {};

TEST_P(RingCounts, SlotsAreFreeOfEachOtherOfObstaclesAndOfLanes) {
  const Scene scene = MakeScene(testing::RandomRequest({.name = "", .labels = 10, .obstacles = 30}, 4));
  const std::vector<Seat> slots = MakeSlots(scene, PlanFor(scene, GetParam()));
  EXPECT_GT(slots.size(), 20U);
  for (const Seat& one : slots) {
    EXPECT_TRUE(scene.page.Contains(one.spot.box));
    for (const FixedBox& obstacle : scene.obstacles) {
      EXPECT_FALSE(BoxesOverlap(one.spot.box, obstacle));
      EXPECT_FALSE(SegmentEntersBox(one.spot.port, one.spot.attach, obstacle));
    }
    for (const Seat& other : slots) {
      if (&one == &other) continue;
      EXPECT_FALSE(BoxesOverlap(one.spot.box, other.spot.box));
      EXPECT_FALSE(SegmentEntersBox(one.spot.port, one.spot.attach, other.spot.box));
      EXPECT_FALSE(one.spot.port == other.spot.port);
    }
  }
}

TEST_P(RingCounts, RelaxationShortensLeadersAndKeepsLabelsApart) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE(seed);
    const int labels = GetParam() == 1 ? 25 : 45;
    const Scene scene = MakeScene(testing::RandomRequest({.name = "", .labels = labels, .obstacles = 10}, seed));
    const RingPlan plan = PlanFor(scene, GetParam());
    Seating seating = ScatteredSeating(scene, plan);
    const Tally before = Audit(scene, SpotsOf(scene, seating));
    ASSERT_EQ(before.labelOverlaps + before.labelsOverObstacle, 0);
    RelaxSeats(scene, plan, seating.items, seating.seats);
    const Tally after = Audit(scene, SpotsOf(scene, seating));
    EXPECT_LT(after.length, before.length);
    EXPECT_EQ(after.labelOverlaps + after.labelsOverObstacle + after.labelsOutsidePage + after.labelsOverModel, 0);
    for (const Seat& one : seating.seats) {
      for (const Seat& other : seating.seats) {
        if (&one == &other) continue;
        EXPECT_FALSE(SegmentEntersBox(one.spot.port, one.spot.attach, other.spot.box));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(SlotMatching, RingCounts, ::testing::Values(1, 2, 4));

TEST(LocalSearch, RemovesCrossingsByDealingTheSameSeatsOut) {
  const Scene scene = MakeScene(testing::RandomRequest({.name = "", .labels = 25, .mostAnchors = 3}, 2));
  Seating seating = ScatteredSeating(scene, PlanFor(scene, 1));
  const auto ports = [&] {
    std::vector<FixedPoint> all;
    for (const auto* seats : {&seating.seats, &seating.free})
      for (const Seat& seat : *seats) all.push_back(seat.spot.port);
    std::sort(all.begin(), all.end());
    return all;
  };
  const auto crossings = [&] { return Audit(scene, SpotsOf(scene, seating)).crossings; };
  const std::vector<FixedPoint> before = ports();
  const int tangled = crossings();
  ReduceCrossings(scene, seating, 10000, 1);
  EXPECT_LT(crossings(), tangled / 2);
  EXPECT_EQ(ports(), before);
}

}  // namespace

}  // namespace zrcallouts::placement
