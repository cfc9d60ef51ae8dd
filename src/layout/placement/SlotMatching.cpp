#include "layout/placement/SlotMatching.h"

#include <algorithm>

#include "layout/placement/Assignment.h"
#include "layout/placement/Audit.h"
#include "layout/placement/LocalSearch.h"
#include "layout/placement/Relaxation.h"
#include "layout/placement/RingPacker.h"

namespace zrcallouts::placement {

namespace {

constexpr double kCostUnits = 256;  // Per raster unit, so that rounding to whole costs seldom decides.

Item LargestItem(const Scene& scene) {
  Item largest;
  for (const Item& item : scene.items) {
    if (item.anchors.empty()) continue;
    largest.width = std::max(largest.width, item.width);
    largest.height = std::max(largest.height, item.height);
  }
  return largest;
}

class Matcher {
public:
  Matcher(const Scene& scene, const RingPlan& plan, std::vector<Seat> slots);

  [[nodiscard]] SpotList Match();
  [[nodiscard]] SpotList Untangle();

private:
  void Assign();
  [[nodiscard]] CostMatrix Costs(const std::vector<Seat>& seats) const;
  void Take(std::vector<Seat> seats, const Assignment& assignment);
  [[nodiscard]] double CostOf(const Item& item, const Seat& seat) const;
  void Keep();
  void InsistOnOrder(std::vector<Seat> slots);

  const Scene& scene_;
  const RingPlan& plan_;
  Seating seating_;
  std::vector<double> potentials_;  ///< Of the seats, from the last assignment.
  bool obstaclesInside_ = false;
  SpotList best_;
  Tally bestTally_;
};

Matcher::Matcher(const Scene& scene, const RingPlan& plan, std::vector<Seat> slots)
    : scene_(scene), plan_(plan), seating_{plan.frame, {}, {}, std::move(slots)} {
  for (std::size_t i = 0; i < scene.items.size(); ++i)
    if (!scene.items[i].anchors.empty()) seating_.items.push_back(i);
  for (const FixedBox& obstacle : scene.obstacles) obstaclesInside_ |= BoxesOverlap(obstacle, plan.frame);
}

/// What an item costs on a seat. Where an item stands on a seat matters to its leaders only if its anchors are outside
/// the frame; deciding that first saves most of the work.
double Matcher::CostOf(const Item& item, const Seat& seat) const {
  const bool inside = plan_.frame.Contains({item.focus.x, item.focus.y, item.focus.x, item.focus.y});
  const LabelSpot spot = inside ? seat.spot : SpotOn(item, seat, plan_.frame);
  double cost = LeaderLength(item, spot);
  if (spot.port != spot.attach) cost += kBendCost * static_cast<double>(item.anchors.size());
  if (obstaclesInside_)
    for (const FixedBox& obstacle : scene_.obstacles) cost += kObstacleCost * LeaderEntersBox(item, spot, obstacle);
  return cost;
}

CostMatrix Matcher::Costs(const std::vector<Seat>& seats) const {
  CostMatrix costs(seating_.items.size(), seats.size());
  for (std::size_t row = 0; row < costs.Rows(); ++row)
    for (std::size_t column = 0; column < costs.Columns(); ++column)
      costs.Set(row, column, kCostUnits * CostOf(scene_.items[seating_.items[row]], seats[column]));
  return costs;
}

void Matcher::Take(std::vector<Seat> seats, const Assignment& assignment) {
  potentials_.clear();
  seating_.seats.clear();
  std::vector<bool> taken(seats.size(), false);
  for (const std::size_t column : assignment.columnOfRow) {
    seating_.seats.push_back(seats[column]);
    potentials_.push_back(assignment.columnPotential[column]);
    taken[column] = true;
  }
  seating_.free.clear();
  for (std::size_t column = 0; column < seats.size(); ++column)
    if (!taken[column]) seating_.free.push_back(seats[column]);
}

/// Deals the seats out anew: at the first time all slots, later those that are taken.
void Matcher::Assign() {
  std::vector<Seat> seats = std::move(seating_.seats.empty() ? seating_.free : seating_.seats);
  const Assignment assignment = MinCostAssignment(Costs(seats), std::move(potentials_));
  Take(std::move(seats), assignment);
}

void Matcher::Keep() {
  SpotList spots = SpotsOf(scene_, seating_);
  const Tally tally = Audit(scene_, spots);
  if (!best_.empty() && !tally.IsBetterThan(bestTally_)) return;
  best_ = std::move(spots);
  bestTally_ = tally;
}

SpotList Matcher::Match() {
  constexpr int kRounds = 3;
  Assign();
  Keep();
  for (int round = 0; round < kRounds; ++round) {
    RelaxSeats(scene_, plan_, seating_.items, seating_.seats);
    Keep();
    Assign();
    Keep();
  }
  return std::move(best_);
}

/// Starts again with a price for crossings that no length outweighs: stars of many leaders otherwise keep near their
/// parts' middle and cross, though they need not on opposite sides.
void Matcher::InsistOnOrder(std::vector<Seat> slots) {
  constexpr std::size_t kSteps = 20000;
  seating_.seats.clear();
  seating_.free = std::move(slots);
  potentials_.clear();
  Assign();
  ReduceCrossings(scene_, seating_, kSteps, 1, 20 * kCrossingCost);
  Keep();
}

SpotList Matcher::Untangle() {
  constexpr std::size_t kMostSteps = 32000, kStepsPerItem = 400;
  const std::size_t steps = std::min(kMostSteps, kStepsPerItem * seating_.items.size());
  std::vector<Seat> slots = seating_.free;
  Assign();
  ReduceCrossings(scene_, seating_, steps, 1);
  Keep();
  // Free slots may overlap labels that have moved.
  seating_.free.clear();
  RelaxSeats(scene_, plan_, seating_.items, seating_.seats);
  Keep();
  ReduceCrossings(scene_, seating_, steps / 4, 0);
  Keep();
  constexpr std::size_t kFew = 60;
  if (bestTally_.crossings > 0 && seating_.items.size() <= kFew) InsistOnOrder(std::move(slots));
  return std::move(best_);
}

}  // namespace

std::vector<Seat> MakeSlots(const Scene& scene, const RingPlan& plan) {
  const Item largest = LargestItem(scene);
  std::vector<Seat> slots;
  for (std::size_t s = 0; s < kSides.size(); ++s) {
    RingTask task = MakeRingTask(scene, plan, s);
    const SidePoint size{task.edge.Extent(largest), task.edge.Depth(largest)};
    task.leastExtent = size.u;
    task.mostDepth = size.v;
    RingPacker packer(scene, task);
    while (packer.RingCount() > 0) {
      const std::size_t ring = packer.ChooseRing(task.portLow - 1);
      const Coord port = packer.EarliestPort(ring);
      if (port > task.portHigh) break;
      Seat seat{{}, s};
      if (packer.Place(ring, port, size, seat.spot)) slots.push_back(seat);
    }
  }
  return slots;
}

SpotList MatchToSlots(const Scene& scene, const RingPlan& plan, std::vector<Seat> slots) {
  return Matcher(scene, plan, std::move(slots)).Match();
}

SpotList MatchAndUntangle(const Scene& scene, const RingPlan& plan, std::vector<Seat> slots) {
  return Matcher(scene, plan, std::move(slots)).Untangle();
}

}  // namespace zrcallouts::placement
