// How much of a side labels of mixed sizes can fill is known only after the sweep. So a side that ran out of room
// counts as smaller in the next round, which moves anchors to its neighbours, until all labels have a place or no round
// helps.
#include "layout/placement/SideSweeps.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "layout/placement/Audit.h"
#include "layout/placement/HullSweep.h"
#include "layout/placement/LocalSearch.h"
#include "layout/placement/Relaxation.h"
#include "layout/placement/SideAssignment.h"

namespace zrcallouts::placement {

namespace {

using Capacities = std::array<double, 4>;

SpotList PlainSpots(const std::vector<Seat>& seats) {
  SpotList spots;
  for (const Seat& seat : seats) spots.push_back(seat.spot);
  return spots;
}

/// Seats all items on the sides; shrinks the capacity of each side that has no room for all of its items.
std::vector<Seat> SweepOnce(const Scene& scene, const RingPlan& plan, double stacking, Capacities& capacity) {
  constexpr double kShrink = 0.93;
  std::vector<Seat> seats(scene.items.size());
  const SideAssignment assignment = AssignSides(scene, plan.frame, capacity);
  for (std::size_t s = 0; s < kSides.size(); ++s) {
    SweepTask task{MakeRingTask(scene, plan, s), assignment.members[s], stacking};
    task.room.portLow = assignment.portLow[s];
    task.room.portHigh = assignment.portHigh[s];
    HullSweep(scene, task, seats);
    bool full = false;
    for (const std::size_t member : assignment.members[s]) {
      seats[member].side = s;
      full = full || !seats[member].spot.placed;
    }
    if (full) capacity[s] *= kShrink;
  }
  return seats;
}

/// Sweeps until all labels have a place or no round helps.
std::vector<Seat> SweepRounds(const Scene& scene, const RingPlan& plan, double stacking) {
  const int rounds = std::clamp(static_cast<int>(16000 / (scene.items.size() + 1)), 1, 16);
  Capacities capacity{};
  for (std::size_t s = 0; s < kSides.size(); ++s) {
    const RingTask task = MakeRingTask(scene, plan, s);
    capacity[s] = static_cast<double>((task.edge.End() - task.edge.Begin()) * plan.rings[s]);
  }
  std::vector<Seat> best;
  Tally bestTally;
  for (int round = 0; round < rounds && (best.empty() || bestTally.unplaced > 0); ++round) {
    std::vector<Seat> seats = SweepOnce(scene, plan, stacking, capacity);
    const Tally tally = Audit(scene, PlainSpots(seats));
    if (!best.empty() && !tally.IsBetterThan(bestTally)) continue;
    best = std::move(seats);
    bestTally = tally;
  }
  return best;
}

/// Moves labels toward their anchors where that makes the placement better.
void Relax(const Scene& scene, const RingPlan& plan, std::vector<Seat>& seats) {
  std::vector<std::size_t> items(scene.items.size());
  std::iota(items.begin(), items.end(), std::size_t{0});
  std::vector<Seat> relaxed = seats;
  RelaxSeats(scene, plan, items, relaxed);
  if (Audit(scene, PlainSpots(relaxed)).IsBetterThan(Audit(scene, PlainSpots(seats)))) seats = std::move(relaxed);
}

}  // namespace

SpotList SweepSides(const Scene& scene, const RingPlan& plan, double stacking) {
  std::vector<Seat> seats = SweepRounds(scene, plan, stacking);
  Relax(scene, plan, seats);
  return PlainSpots(seats);
}

SpotList SweepAndUntangle(const Scene& scene, const RingPlan& plan, double stacking) {
  constexpr std::size_t kMostSteps = 32000, kStepsPerItem = 400;
  std::vector<Seat> seats = SweepRounds(scene, plan, stacking);
  Relax(scene, plan, seats);
  Seating seating{plan.frame, {}, {}, {}};
  for (std::size_t i = 0; i < seats.size(); ++i) {
    if (!seats[i].spot.placed) continue;
    seating.items.push_back(i);
    seating.seats.push_back(seats[i]);
  }
  ReduceCrossings(scene, seating, std::min(kMostSteps, kStepsPerItem * seating.items.size()), 1);
  for (std::size_t k = 0; k < seating.items.size(); ++k) seats[seating.items[k]] = seating.seats[k];
  Relax(scene, plan, seats);
  return PlainSpots(seats);
}

}  // namespace zrcallouts::placement
