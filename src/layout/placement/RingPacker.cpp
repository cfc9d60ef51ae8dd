#include "layout/placement/RingPacker.h"

#include <algorithm>
#include <limits>

namespace zrcallouts::placement {

namespace {

constexpr Coord kNever = std::numeric_limits<Coord>::max() / 4;

}  // namespace

RingTask MakeRingTask(const Scene& scene, const RingPlan& plan, std::size_t side) {
  const SideFrame edge(plan.frame, kSides[side]);
  const auto [pageLow, pageHigh] = edge.ToSide(scene.page);
  // Rows may stand out over the corners of the frame, columns may not: so they never meet.
  RingTask task{edge, edge.Begin(), edge.End(), pageLow.u, pageHigh.u};
  if (!edge.IsRow()) {
    task.boxLow = std::max(pageLow.u, edge.Begin());
    task.boxHigh = std::min(pageHigh.u, edge.End());
  }
  // No room on a side whose edge itself is off the page.
  task.depth = pageLow.v > 0 ? 0 : pageHigh.v;
  task.rings = plan.rings[side];
  task.gap = plan.gap;
  task.lane = plan.lane;
  return task;
}

RingPacker::RingPacker(const Scene& scene, const RingTask& task) : task_(task), nextPort_(task.portLow) {
  for (int r = 0; r < task.rings; ++r) {
    const Coord v = r * (task.mostDepth + task.gap);
    if (v + task.mostDepth > task.depth) break;
    // Rings in the middle have lanes of outer rings on their low side: the port stays near that edge.
    const bool middle = r > 0 && r + 1 < task.rings;
    const Coord center = task.leastExtent / 2;
    rings_.push_back({middle ? std::min(task.lane, center) : center, v, task.boxLow, task.portLow});
  }
  hindrances_ = Hindrances(scene, task.edge);
}

Coord RingPacker::EarliestPort(std::size_t ring) const {
  Coord port = std::max({nextPort_, rings_[ring].notBefore, rings_[ring].nextLow + rings_[ring].offset});
  for (std::size_t inner = 0; inner < ring; ++inner)
    port = std::max(port, rings_[inner].nextLow - task_.gap + task_.lane);
  return port;
}

std::size_t RingPacker::ChooseRing(Coord wished) const {
  std::size_t best = 0;
  Coord bestPort = kNever;
  for (std::size_t ring = 0; ring < rings_.size(); ++ring) {
    const Coord port = EarliestPort(ring);
    if (port <= wished) return ring;
    if (port > bestPort) continue;
    best = ring;
    bestPort = port;
  }
  return best;
}

Coord RingPacker::BlockedUntil(const Ring& ring, Coord port, SidePoint low, SidePoint high) const {
  Coord until = port;
  for (const auto& [from, to] : hindrances_) {
    const bool label = low.u < to.u + task_.gap && from.u - task_.gap < high.u && low.v < to.v && from.v < high.v;
    const bool lane = port < to.u + task_.lane && from.u - task_.lane < port && 0 < to.v && from.v < ring.v;
    if (label || lane) until = std::max({until, port + 1, label ? to.u + task_.gap + ring.offset : to.u + task_.lane});
  }
  return until;
}

bool RingPacker::Place(std::size_t ringIndex, Coord port, SidePoint size, LabelSpot& spot) {
  Ring& ring = rings_[ringIndex];
  const SidePoint low{port - ring.offset, ring.v}, high{low.u + size.u, low.v + size.v};
  ring.notBefore = high.u > task_.boxHigh ? kNever : BlockedUntil(ring, port, low, high);
  if (ring.notBefore > port) return false;
  spot = {true, task_.edge.ToPage(low, high), task_.edge.ToPage(SidePoint{port, 0}),
          task_.edge.ToPage(SidePoint{port, ring.v})};
  ring.nextLow = high.u + task_.gap;
  for (std::size_t inner = 0; inner < ringIndex; ++inner)
    rings_[inner].nextLow = std::max(rings_[inner].nextLow, port + task_.lane);
  nextPort_ = port + (rings_.size() > 1 ? std::max<Coord>(1, task_.lane) : 1);
  return true;
}

}  // namespace zrcallouts::placement
