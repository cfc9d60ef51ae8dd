// The side is filled from its low end. The port, where the next leader meets the frame, is fixed before its label is
// known: it stands at a constant offset from the label's low edge. Of the remaining anchors the one is taken that the
// port sees at the smallest angle from the side's low direction, so every remaining anchor and every later port lies in
// one closed half-plane of the new leader, and no later leader can cross it. Labels of outer rings have their leader
// bend at the port and run perpendicular to the side through a lane that the labels of inner rings leave free.
// Cost: quadratic in the members of a side. After Bekos, Kaufmann, Symvonis, Wolff: Boundary labeling (2007), there for
// labels of one size.
#include "layout/placement/HullSweep.h"

#include <algorithm>
#include <limits>

#include "layout/placement/IsotonicRegression.h"

namespace zrcallouts::placement {

namespace {

class SideSweep {
public:
  SideSweep(const Scene& scene, const RingTask& task, const std::vector<std::size_t>& members)
      : scene_(scene), task_(task), packer_(scene, task), remaining_(members) {
    for (const std::size_t i : members) remainingExtent_ += task.edge.Extent(scene.items[i]) + task.gap;
  }

  void Run(SpotList& spots);

private:
  [[nodiscard]] SidePoint FocusOf(std::size_t member) const { return task_.edge.ToSide(scene_.items[member].focus); }
  [[nodiscard]] std::vector<Coord> WishedPorts() const;
  [[nodiscard]] std::size_t ChooseMember(Coord port) const;

  const Scene& scene_;
  const RingTask& task_;
  RingPacker packer_;
  std::vector<std::size_t> remaining_;
  Coord remainingExtent_ = 0;
};

std::vector<Coord> SideSweep::WishedPorts() const {
  std::vector<std::size_t> order = remaining_;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return FocusOf(a).u < FocusOf(b).u; });
  const std::size_t count = order.size();
  SpacingTask spacing{{},
                      std::vector<double>(count, 1.0),
                      std::vector<double>(count, 0.0),
                      std::vector<double>(count, static_cast<double>(task_.portLow)),
                      std::vector<double>(count, static_cast<double>(task_.portHigh))};
  for (std::size_t k = 0; k < count; ++k) {
    spacing.wished.push_back(static_cast<double>(FocusOf(order[k]).u));
    if (k == 0) continue;
    const Coord before = task_.edge.Extent(scene_.items[order[k - 1]]) + task_.gap;
    spacing.gaps[k] = static_cast<double>(before) / static_cast<double>(packer_.RingCount());
  }
  const std::vector<double> fitted = SpacedPositions(spacing);
  return {fitted.begin(), fitted.end()};
}

std::size_t SideSweep::ChooseMember(Coord port) const {
  std::size_t best = 0;
  SidePoint bestRay;
  for (std::size_t k = 0; k < remaining_.size(); ++k) {
    const SidePoint focus = FocusOf(remaining_[k]);
    const SidePoint ray{focus.u - port, focus.v};
    const Coord turn = ray.u * bestRay.v - ray.v * bestRay.u;
    const bool nearer = ray.u * ray.u + ray.v * ray.v < bestRay.u * bestRay.u + bestRay.v * bestRay.v;
    if (k > 0 && (turn < 0 || (turn == 0 && !nearer))) continue;
    best = k;
    bestRay = ray;
  }
  return best;
}

void SideSweep::Run(SpotList& spots) {
  if (packer_.RingCount() == 0) return;
  const std::vector<Coord> wished = WishedPorts();
  while (!remaining_.empty()) {
    const Coord latest = task_.portHigh - remainingExtent_ / static_cast<Coord>(packer_.RingCount());
    const Coord wish = std::min(wished[wished.size() - remaining_.size()], latest);
    const std::size_t ring = packer_.ChooseRing(wish);
    const Coord port = std::max(packer_.EarliestPort(ring), wish);
    if (port > task_.portHigh) return;
    const std::size_t position = ChooseMember(port), member = remaining_[position];
    const SidePoint size{task_.edge.Extent(scene_.items[member]), task_.edge.Depth(scene_.items[member])};
    if (!packer_.Place(ring, port, size, spots[member])) continue;
    remainingExtent_ -= size.u + task_.gap;
    remaining_.erase(remaining_.begin() + static_cast<std::ptrdiff_t>(position));
  }
}

}  // namespace

void HullSweep(const Scene& scene, RingTask task, const std::vector<std::size_t>& members, SpotList& spots) {
  if (members.empty()) return;
  task.leastExtent = std::numeric_limits<Coord>::max();
  task.mostDepth = 0;
  for (const std::size_t i : members) {
    task.leastExtent = std::min(task.leastExtent, task.edge.Extent(scene.items[i]));
    task.mostDepth = std::max(task.mostDepth, task.edge.Depth(scene.items[i]));
  }
  SideSweep(scene, task, members).Run(spots);
}

}  // namespace zrcallouts::placement
