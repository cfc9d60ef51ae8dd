// The side is filled from its low end. The port, where the next leader meets the frame, is fixed before its label is
// known: it stands at a constant offset from the label's low edge. Of the remaining anchors the one is taken that the
// port sees at the smallest angle from the side's low direction, so every remaining anchor and every later port lies in
// one closed half-plane of the new leader, and no later leader can cross it.
// Where labels are more than the side is long, they come in stacks: ports close to each other, the first label
// outermost. Leaders bend at the port and run perpendicular to the side, past the low edges of the stack's later
// labels. Under a label that is longer than those before it the free depth is filled again. Cost: quadratic in the
// members of a side. After Bekos, Kaufmann, Symvonis, Wolff: Boundary labeling (2007), there for labels of one size in
// one row.
#include "layout/placement/HullSweep.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "layout/placement/IsotonicRegression.h"

namespace zrcallouts::placement {

namespace {

class SideSweep {
public:
  SideSweep(const Scene& scene, const SweepTask& task);

  void Run(std::vector<Seat>& seats);

private:
  /// A label of the stack that is being built.
  struct Stacked {
    std::size_t member;
    Coord port;
    SidePoint low, high;
  };
  /// A placed label that may still stand above the low edge of the next one.
  struct Standing {
    Coord end, v;
  };

  [[nodiscard]] SidePoint FocusOf(std::size_t member) const { return room_.edge.ToSide(scene_.items[member].focus); }
  [[nodiscard]] std::vector<Coord> WishedPorts() const;
  [[nodiscard]] std::size_t ChooseMember(Coord port) const;
  [[nodiscard]] int WishedHeight(Coord wish) const;
  [[nodiscard]] Coord FreeDepth() const;
  [[nodiscard]] Coord NextEnd() const;
  [[nodiscard]] std::vector<Stacked> TakeStack(int height, Coord depth);
  void PutBack(const std::vector<Stacked>& stack);
  [[nodiscard]] Coord BlockedUntil(const Stacked& label) const;
  void Settle(const std::vector<Stacked>& stack, std::vector<Seat>& seats);

  const Scene& scene_;
  const SweepTask& task_;
  const RingTask& room_;
  std::vector<std::size_t> remaining_;
  std::vector<SideBox> hindrances_;
  std::vector<Standing> standing_;
  Coord low_ = 0;              ///< Where the low edge of the next label may stand.
  Coord portOffset_ = 0;       ///< From the low edge of a label next to the frame to its port.
  Coord remainingExtent_ = 0;  ///< Of all remaining labels in one row, gaps included.
};

SideSweep::SideSweep(const Scene& scene, const SweepTask& task)
    : scene_(scene), task_(task), room_(task.room), remaining_(task.members) {
  portOffset_ = std::numeric_limits<Coord>::max();
  for (const std::size_t member : task.members) {
    const Coord extent = room_.edge.Extent(scene.items[member]);
    portOffset_ = std::min(portOffset_, extent / 2);
    remainingExtent_ += extent + room_.gap;
  }
  hindrances_ = Hindrances(scene, room_.edge);
  low_ = std::max(room_.boxLow, room_.portLow - portOffset_);
}

std::vector<Coord> SideSweep::WishedPorts() const {
  std::vector<std::size_t> order = remaining_;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return FocusOf(a).u < FocusOf(b).u; });
  const std::size_t count = order.size();
  SpacingTask spacing{{},
                      std::vector<double>(count, 1.0),
                      std::vector<double>(count, 0.0),
                      std::vector<double>(count, static_cast<double>(room_.portLow)),
                      std::vector<double>(count, static_cast<double>(room_.portHigh))};
  const double length = static_cast<double>(std::max<Coord>(1, room_.portHigh - room_.portLow));
  const double crowding = std::max(1.0, task_.stacking * static_cast<double>(remainingExtent_) / length);
  for (std::size_t k = 0; k < count; ++k) {
    spacing.wished.push_back(static_cast<double>(FocusOf(order[k]).u));
    if (k > 0)
      spacing.gaps[k] = static_cast<double>(room_.edge.Extent(scene_.items[order[k - 1]]) + room_.gap) / crowding;
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

/// Labels that should stand one behind the other here: as many as the rest needs to fit.
int SideSweep::WishedHeight(Coord wish) const {
  const double left = static_cast<double>(std::max<Coord>(1, room_.portHigh - low_));
  const double crowding = task_.stacking * static_cast<double>(remainingExtent_) / left;
  if (crowding <= 1 && low_ + portOffset_ <= wish) return 1;
  return std::clamp(static_cast<int>(std::ceil(crowding)), 1, room_.rings);
}

Coord SideSweep::FreeDepth() const {
  Coord depth = room_.depth;
  for (const Standing& label : standing_)
    if (label.end + room_.gap > low_) depth = std::min(depth, label.v - room_.gap);
  return depth;
}

Coord SideSweep::NextEnd() const {
  Coord next = std::numeric_limits<Coord>::max();
  for (const Standing& label : standing_)
    if (label.end + room_.gap > low_) next = std::min(next, label.end + room_.gap);
  return next;
}

std::vector<SideSweep::Stacked> SideSweep::TakeStack(int height, Coord depth) {
  std::vector<Stacked> stack;
  Coord low = low_;
  for (int level = 0; level < height && !remaining_.empty(); ++level) {
    const bool last = level + 1 == height;
    const Coord port = std::max(room_.portLow, low + (last ? portOffset_ : std::min(room_.lane, portOffset_)));
    if (port > room_.portHigh) break;
    const std::size_t position = ChooseMember(port), member = remaining_[position];
    const Coord extent = room_.edge.Extent(scene_.items[member]), deep = room_.edge.Depth(scene_.items[member]);
    if (deep > depth || low + extent > room_.boxHigh) break;
    depth -= deep + room_.gap;
    for (Stacked& outer : stack) {
      outer.low.v += deep + room_.gap;
      outer.high.v += deep + room_.gap;
    }
    stack.push_back({member, port, {low, 0}, {low + extent, deep}});
    remaining_.erase(remaining_.begin() + static_cast<std::ptrdiff_t>(position));
    low = port + room_.lane;
  }
  return stack;
}

void SideSweep::PutBack(const std::vector<Stacked>& stack) {
  for (const Stacked& label : stack) remaining_.push_back(label.member);
  std::sort(remaining_.begin(), remaining_.end());
}

/// Where the low edge of the stack has to go for the label to come free of obstacles; `low_` when it is free.
Coord SideSweep::BlockedUntil(const Stacked& label) const {
  Coord until = low_;
  for (const auto& [from, to] : hindrances_) {
    const bool box = label.low.u < to.u + room_.gap && from.u - room_.gap < label.high.u && label.low.v < to.v &&
                     from.v < label.high.v;
    const bool lane =
        label.port < to.u + room_.lane && from.u - room_.lane < label.port && 0 < to.v && from.v < label.low.v;
    if (box || lane) until = std::max({until, low_ + 1, box ? to.u + room_.gap : to.u + room_.lane - portOffset_});
  }
  return until;
}

void SideSweep::Settle(const std::vector<Stacked>& stack, std::vector<Seat>& seats) {
  for (const Stacked& label : stack) {
    seats[label.member].spot = {true, room_.edge.ToPage(label.low, label.high),
                                room_.edge.ToPage(SidePoint{label.port, 0}),
                                room_.edge.ToPage(SidePoint{label.port, label.low.v})};
    standing_.push_back({label.high.u, label.low.v});
    remainingExtent_ -= label.high.u - label.low.u + room_.gap;
  }
  low_ = stack.back().high.u + room_.gap;
}

void SideSweep::Run(std::vector<Seat>& seats) {
  const std::vector<Coord> wished = WishedPorts();
  while (!remaining_.empty()) {
    const Coord latest = room_.portHigh - remainingExtent_;
    const Coord wish = std::min(wished[wished.size() - remaining_.size()], latest);
    low_ = std::max(low_, wish - portOffset_);
    if (low_ + std::min(room_.lane, portOffset_) > room_.portHigh) return;
    const Coord depth = FreeDepth();
    std::vector<Stacked> stack = TakeStack(WishedHeight(wish), depth);
    if (stack.empty()) {
      // Nothing fits under what stands here, or not at all.
      const Coord next = NextEnd();
      if (next == std::numeric_limits<Coord>::max()) return;
      low_ = next;
      continue;
    }
    Coord until = low_;
    for (const Stacked& label : stack) until = std::max(until, BlockedUntil(label));
    if (until > low_) {
      PutBack(stack);
      low_ = until;
    } else {
      Settle(stack, seats);
    }
  }
}

}  // namespace

void HullSweep(const Scene& scene, const SweepTask& task, std::vector<Seat>& seats) {
  if (!task.members.empty()) SideSweep(scene, task).Run(seats);
}

}  // namespace zrcallouts::placement
