#include "layout/placement/SideAssignment.h"

#include <algorithm>

namespace zrcallouts::placement {

namespace {

constexpr Coord kNoWay = Coord{1} << 40;

using Biases = std::array<Coord, 4>;

/// Distance from an item to a side, or kNoWay where the side is too shallow for its label.
Coord CostOf(const Scene& scene, const FixedBox& frame, const Item& item, Side side) {
  const SideFrame edge(frame, side);
  const FixedPoint pageCorner = side == Side::Top || side == Side::Left
                                    ? FixedPoint{scene.page.left, scene.page.top}
                                    : FixedPoint{scene.page.right, scene.page.bottom};
  if (edge.ToSide(pageCorner).v < edge.Depth(item)) return kNoWay;
  return -edge.ToSide(item.focus).v;
}

struct CostTable {
  std::vector<std::array<Coord, 4>> cost;

  CostTable(const Scene& scene, const FixedBox& frame) {
    for (const Item& item : scene.items) {
      auto& row = cost.emplace_back();
      for (std::size_t s = 0; s < 4; ++s) row[s] = CostOf(scene, frame, item, kSides[s]);
    }
  }

  [[nodiscard]] std::size_t Cheapest(std::size_t item, const Biases& bias) const {
    std::size_t best = 0;
    for (std::size_t s = 1; s < 4; ++s)
      if (cost[item][s] + bias[s] < cost[item][best] + bias[best]) best = s;
    return best;
  }
};

/// The share of each side that is in use: 1 is full.
std::array<double, 4> Loads(const Scene& scene, const FixedBox& frame, const CostTable& costs, const Biases& bias,
                            const std::array<double, 4>& capacity) {
  std::array<double, 4> load{};
  for (std::size_t i = 0; i < scene.items.size(); ++i) {
    if (scene.items[i].anchors.empty()) continue;
    const std::size_t s = costs.Cheapest(i, bias);
    load[s] += static_cast<double>(SideFrame(frame, kSides[s]).Extent(scene.items[i]) + scene.gap);
  }
  for (std::size_t s = 0; s < 4; ++s) load[s] /= std::max(1.0, capacity[s]);
  return load;
}

Biases BalancedBiases(const Scene& scene, const FixedBox& frame, const CostTable& costs,
                      const std::array<double, 4>& capacity) {
  // Large scenes get fewer rounds: sides that have room for all are balanced long before.
  const int rounds = std::clamp(static_cast<int>(320000 / (scene.items.size() + 1)), 8, 160);
  Biases bias{};
  const Coord firstStep = std::max<Coord>(1, std::min(frame.Width(), frame.Height()) / 16);
  for (int round = 0; round < rounds; ++round) {
    const auto load = Loads(scene, frame, costs, bias, capacity);
    const std::size_t fullest = static_cast<std::size_t>(std::max_element(load.begin(), load.end()) - load.begin());
    if (load[fullest] <= 1) break;
    bias[fullest] += std::max<Coord>(1, firstStep / (1 + round / 8));
  }
  return bias;
}

}  // namespace

SideAssignment AssignSides(const Scene& scene, const FixedBox& frame, const std::array<double, 4>& capacity) {
  const CostTable costs(scene, frame);
  const Biases bias = BalancedBiases(scene, frame, costs, capacity);
  SideAssignment assignment;
  for (std::size_t i = 0; i < scene.items.size(); ++i)
    if (!scene.items[i].anchors.empty()) assignment.members[costs.Cheapest(i, bias)].push_back(i);
  for (std::size_t s = 0; s < 4; ++s) {
    // Where a neighbour's bias is lower, its region reaches round the corner and takes a piece of this edge.
    const SideFrame edge(frame, kSides[s]);
    const std::size_t lowSide = edge.IsRow() ? 3 : 0, highSide = edge.IsRow() ? 1 : 2;
    assignment.portLow[s] = edge.Begin() + std::max<Coord>(0, bias[s] - bias[lowSide]);
    assignment.portHigh[s] = edge.End() - std::max<Coord>(0, bias[s] - bias[highSide]);
  }
  return assignment;
}

}  // namespace zrcallouts::placement
