#include "layout/placement/SlotMatching.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>

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

/// How often a label or a leader's last piece is in the way of another one or of an obstacle, or off the page.
int CountClashes(const Scene& scene, const std::vector<Seat>& seats) {
  int clashes = 0;
  for (const Seat& one : seats) {
    const auto isHitBy = [&](const FixedBox& box) {
      return BoxesOverlap(one.spot.box, box) || SegmentEntersBox(one.spot.port, one.spot.attach, box);
    };
    clashes += !scene.page.Contains(one.spot.box);
    clashes += static_cast<int>(std::count_if(scene.obstacles.begin(), scene.obstacles.end(), isHitBy));
    for (const Seat& other : seats)
      clashes += &one != &other && (isHitBy(other.spot.box) || one.spot.port == other.spot.port);
  }
  return clashes;
}

class RingCounts : public ::testing::TestWithParam<int> {};

TEST_P(RingCounts, SlotsAreClearOfEachOtherAndRelaxationShortensLeadersWithoutClashes) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE(seed);
    const int labels = GetParam() == 1 ? 25 : 45;
    const Scene scene = MakeScene(testing::RandomRequest({.name = "", .labels = labels, .obstacles = 10}, seed));
    const RingPlan plan = PlanFor(scene, GetParam());
    EXPECT_EQ(CountClashes(scene, MakeSlots(scene, plan)), 0);
    Seating seating = ScatteredSeating(scene, plan);
    const double before = Audit(scene, SpotsOf(scene, seating)).length;
    RelaxSeats(scene, plan, seating.items, seating.seats);
    const Tally after = Audit(scene, SpotsOf(scene, seating));
    EXPECT_LT(after.length, before);
    EXPECT_EQ(after.labelsOverModel, 0);
    EXPECT_EQ(CountClashes(scene, seating.seats), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(SlotMatching, RingCounts, ::testing::Values(1, 2, 4));

TEST(LocalSearch, RemovesCrossingsByDealingTheSameSeatsOut) {
  const Scene scene = MakeScene(testing::RandomRequest({.name = "", .labels = 25, .mostAnchors = 3}, 2));
  Seating seating = ScatteredSeating(scene, PlanFor(scene, 1));
  const auto ports = [&] {
    std::set<FixedPoint> all;
    for (const auto* seats : {&seating.seats, &seating.free})
      for (const Seat& seat : *seats) all.insert(seat.spot.port);
    return all;
  };
  const auto crossings = [&] { return Audit(scene, SpotsOf(scene, seating)).crossings; };
  const std::set<FixedPoint> before = ports();
  const int tangled = crossings();
  ReduceCrossings(scene, seating, 10000, 1);
  EXPECT_LT(crossings(), tangled / 2);
  EXPECT_EQ(ports(), before);
}

}  // namespace

}  // namespace zrcallouts::placement
