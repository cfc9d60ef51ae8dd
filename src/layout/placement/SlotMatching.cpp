#include "layout/placement/SlotMatching.h"

#include <algorithm>
#include <cmath>

#include "layout/placement/Assignment.h"
#include "layout/placement/Audit.h"
#include "layout/placement/LocalSearch.h"
#include "layout/placement/Relaxation.h"

namespace zrcallouts::placement {

namespace {

constexpr double kBendCost = 30.0 * kUnitsPerPixel;
constexpr double kCostUnits = 256;  ///< Per raster unit, so that rounding seldom decides.
constexpr double kObstacleCost = 1500.0 * kUnitsPerPixel;

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
  Matcher(const Scene& scene, const RingPlan& plan) : scene_(scene), plan_(plan) {
    seating_.frame = plan.frame;
    seating_.free = MakeSlots(scene, plan);
    for (std::size_t i = 0; i < scene.items.size(); ++i) {
      if (scene.items[i].anchors.empty()) continue;
      seating_.items.push_back(i);
      severalLeaders_ |= scene.items[i].anchors.size() > 1;
    }
    for (const FixedBox& obstacle : scene.obstacles) obstaclesInside_ |= BoxesOverlap(obstacle, plan.frame);
  }

  [[nodiscard]] bool HasRoom() const { return seating_.free.size() >= seating_.items.size(); }
  SpotList Run();

private:
  void Match();
  [[nodiscard]] double CostOf(const Item& item, const Seat& seat) const;
  void Keep(SpotList spots);

  const Scene& scene_;
  const RingPlan& plan_;
  Seating seating_;
  std::vector<double> potentials_;  ///< Of the seats, from the last match.
  bool obstaclesInside_ = false, severalLeaders_ = false;
  SpotList best_;
  Tally bestTally_;
};

double Matcher::CostOf(const Item& item, const Seat& seat) const {
  const LabelSpot spot = SpotOn(item, seat, plan_.frame);
  double cost = LeaderLength(item, spot);
  if (spot.port != spot.attach) cost += kBendCost * static_cast<double>(item.anchors.size());
  if (obstaclesInside_)
    for (const FixedBox& obstacle : scene_.obstacles) cost += kObstacleCost * LeaderEntersBox(item, spot, obstacle);
  return cost;
}

/// Seats all items anew on the seats they have, or on free ones at the first time.
void Matcher::Match() {
  std::vector<Seat> seats = std::move(seating_.seats.empty() ? seating_.free : seating_.seats);
  CostMatrix costs(seating_.items.size(), seats.size());
  for (std::size_t row = 0; row < costs.Rows(); ++row)
    for (std::size_t column = 0; column < costs.Columns(); ++column)
      costs.Set(row, column, kCostUnits * CostOf(scene_.items[seating_.items[row]], seats[column]));
  const Assignment assignment = MinCostAssignment(costs, std::move(potentials_));
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

void Matcher::Keep(SpotList spots) {
  const Tally tally = Audit(scene_, spots);
  if (!best_.empty() && !tally.IsBetterThan(bestTally_)) return;
  best_ = std::move(spots);
  bestTally_ = tally;
}

SpotList Matcher::Run() {
  constexpr int kRounds = 3;
  Match();
  if (severalLeaders_) ReduceCrossings(scene_, seating_, atol(getenv("STEPS") ? getenv("STEPS") : "20000"));
  Keep(SpotsOf(scene_, seating_));
  seating_.free.clear();
  for (int round = 0; round < kRounds; ++round) {
    RelaxSeats(scene_, plan_, seating_.items, seating_.seats);
    Keep(SpotsOf(scene_, seating_));
    if (severalLeaders_) {
      ReduceCrossings(scene_, seating_, atol(getenv("STEPS") ? getenv("STEPS") : "20000"));
    } else {
      Match();
    }
    Keep(SpotsOf(scene_, seating_));
  }
  return best_;
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

bool MatchToSlots(const Scene& scene, const RingPlan& plan, SpotList& spots) {
  Matcher matcher(scene, plan);
  if (!matcher.HasRoom()) return false;
  spots = matcher.Run();
  return true;
}

}  // namespace zrcallouts::placement
