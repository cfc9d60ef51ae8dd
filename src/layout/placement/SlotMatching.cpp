#include "layout/placement/SlotMatching.h"

#include <algorithm>
#include <cmath>

#include "layout/placement/Assignment.h"
#include "layout/placement/Audit.h"
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

double CostOf(const Scene& scene, const Item& item, const Seat& seat, bool obstaclesInside) {
  double cost = LeaderLength(item, seat.spot);
  if (seat.spot.port != seat.spot.attach) cost += kBendCost * static_cast<double>(item.anchors.size());
  if (obstaclesInside)
    for (const FixedBox& obstacle : scene.obstacles) cost += kObstacleCost * LeaderEntersBox(item, seat.spot, obstacle);
  return cost;
}

/// The spot of an item on a seat: the seat's box shrunk to the item along the side and toward the frame.
LabelSpot SpotOf(const Item& item, const Seat& seat, const FixedBox& frame) {
  const SideFrame edge(frame, kSides[seat.side]);
  const auto [low, high] = edge.ToSide(seat.spot.box);
  const Coord port = edge.ToSide(seat.spot.port).u, slack = high.u - low.u - edge.Extent(item);
  // Centred on its port where that is possible inside the slot.
  const Coord from = std::clamp(port - edge.Extent(item) / 2, low.u, low.u + slack);
  LabelSpot spot = seat.spot;
  spot.box = edge.ToPage({from, low.v}, {from + edge.Extent(item), low.v + edge.Depth(item)});
  return spot;
}

class Matcher {
public:
  Matcher(const Scene& scene, const RingPlan& plan) : scene_(scene), plan_(plan), seats_(MakeSlots(scene, plan)) {
    for (std::size_t i = 0; i < scene.items.size(); ++i)
      if (!scene.items[i].anchors.empty()) items_.push_back(i);
    for (const FixedBox& obstacle : scene.obstacles) obstaclesInside_ |= BoxesOverlap(obstacle, plan.frame);
  }

  [[nodiscard]] bool HasRoom() const { return seats_.size() >= items_.size(); }
  SpotList Run();

private:
  void Match();
  [[nodiscard]] SpotList Spots() const;

  const Scene& scene_;
  const RingPlan& plan_;
  std::vector<std::size_t> items_;
  std::vector<Seat> seats_;         ///< After the first match: one an item, in the order of items_.
  std::vector<double> potentials_;  ///< Of the seats, from the last match.
  bool obstaclesInside_ = false;
};

void Matcher::Match() {
  CostMatrix costs(items_.size(), seats_.size());
  for (std::size_t row = 0; row < items_.size(); ++row)
    for (std::size_t column = 0; column < seats_.size(); ++column)
      costs.Set(row, column, kCostUnits * CostOf(scene_, scene_.items[items_[row]], seats_[column], obstaclesInside_));
  const Assignment assignment = MinCostAssignment(costs, std::move(potentials_));
  std::vector<Seat> taken;
  potentials_.clear();
  for (const std::size_t column : assignment.columnOfRow) {
    taken.push_back(seats_[column]);
    potentials_.push_back(assignment.columnPotential[column]);
  }
  seats_ = std::move(taken);
}

SpotList Matcher::Spots() const {
  SpotList spots(scene_.items.size());
  for (std::size_t k = 0; k < items_.size(); ++k)
    spots[items_[k]] = SpotOf(scene_.items[items_[k]], seats_[k], plan_.frame);
  return spots;
}

SpotList Matcher::Run() {
  constexpr int kRounds = 3;
  Match();
  SpotList best = Spots();
  Tally bestTally = Audit(scene_, best);
  for (int round = 0; round < kRounds; ++round) {
    RelaxSeats(scene_, plan_, items_, seats_);
    for (const bool rematch : {false, true}) {
      if (rematch) Match();
      SpotList spots = Spots();
      const Tally tally = Audit(scene_, spots);
      if (!tally.IsBetterThan(bestTally)) continue;
      best = std::move(spots);
      bestTally = tally;
    }
  }
  return best;
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
