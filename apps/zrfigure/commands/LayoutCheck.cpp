#include "commands/LayoutCheck.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

namespace zrfigure {
namespace {

constexpr double kSamePointPx = 1e-6;
constexpr double kOverlapPx = 0.02;  ///< Boxes that share less are neighbours.
constexpr double kThroughPx = 0.05;  ///< A leader may graze a balloon's border this much.

struct Segment {
  Point2 from, to;
};

int Orientation(Point2 a, Point2 b, Point2 c) {
  const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
  return std::abs(area) < 1e-7 ? 0 : (area > 0 ? 1 : -1);
}

bool Same(Point2 a, Point2 b) {
  return std::abs(a.x - b.x) < kSamePointPx && std::abs(a.y - b.y) < kSamePointPx;
}

bool Holds(const Segment& segment, Point2 p) {
  const auto [minX, maxX] = std::minmax(segment.from.x, segment.to.x);
  const auto [minY, maxY] = std::minmax(segment.from.y, segment.to.y);
  return Orientation(segment.from, segment.to, p) == 0 && p.x >= minX - kSamePointPx && p.x <= maxX + kSamePointPx &&
         p.y >= minY - kSamePointPx && p.y <= maxY + kSamePointPx;
}

bool ProperlyCross(const Segment& a, const Segment& b) {
  return Orientation(a.from, a.to, b.from) * Orientation(a.from, a.to, b.to) < 0 &&
         Orientation(b.from, b.to, a.from) * Orientation(b.from, b.to, a.to) < 0;
}

/// Whether the segments have a point in common besides `sharedAnchor`, the first point of both when that is set.
bool Meet(const Segment& a, const Segment& b, bool sharedAnchor) {
  if (ProperlyCross(a, b)) return true;
  if (sharedAnchor) return Holds(b, a.to) || Holds(a, b.to);
  return Holds(a, b.from) || Holds(a, b.to) || Holds(b, a.from) || Holds(b, a.to);
}

bool LeadersMeet(const Leader& a, const Leader& b) {
  for (std::size_t i = 0; i + 1 < a.points.size(); ++i) {
    for (std::size_t k = 0; k + 1 < b.points.size(); ++k) {
      const bool sharedAnchor = i == 0 && k == 0 && Same(a.points[0], b.points[0]);
      if (Meet({a.points[i], a.points[i + 1]}, {b.points[k], b.points[k + 1]}, sharedAnchor)) return true;
    }
  }
  return false;
}

bool AnyLeadersMeet(const Balloon& a, const Balloon& b) {
  return std::any_of(a.leaders.begin(), a.leaders.end(), [&](const Leader& mine) {
    return std::any_of(b.leaders.begin(), b.leaders.end(),
                       [&](const Leader& other) { return LeadersMeet(mine, other); });
  });
}

/// Clips the line parameter range [low, high] to one side of a box; false when nothing is left.
bool ClipSide(double direction, double distance, double& low, double& high) {
  if (direction == 0) return distance >= 0;
  const double at = distance / direction;
  if (direction < 0) low = std::max(low, at);
  if (direction > 0) high = std::min(high, at);
  return low < high;
}

/// Liang and Barsky's clipping against the box, shrunk a little.
bool RunsThrough(const Segment& s, const Box2& box) {
  const Point2 d = s.to - s.from;
  double low = 0;
  double high = 1;
  return ClipSide(-d.x, s.from.x - box.minX - kThroughPx, low, high) &&
         ClipSide(d.x, box.maxX - kThroughPx - s.from.x, low, high) &&
         ClipSide(-d.y, s.from.y - box.minY - kThroughPx, low, high) &&
         ClipSide(d.y, box.maxY - kThroughPx - s.from.y, low, high);
}

bool AnyLeaderThrough(const Balloon& balloon, const Box2& box) {
  return std::any_of(balloon.leaders.begin(), balloon.leaders.end(), [&](const Leader& leader) {
    for (std::size_t i = 0; i + 1 < leader.points.size(); ++i) {
      if (RunsThrough({leader.points[i], leader.points[i + 1]}, box)) return true;
    }
    return false;
  });
}

/// Balloon and leaders together.
Box2 Extent(const Balloon& balloon) {
  Box2 extent = balloon.box;
  for (const Leader& leader : balloon.leaders) {
    for (const Point2& point : leader.points) extent.Add(point);
  }
  return extent;
}

bool Apart(const Box2& a, const Box2& b) {
  return a.maxY < b.minY - kSamePointPx || b.maxY < a.minY - kSamePointPx || a.maxX < b.minX - kSamePointPx ||
         b.maxX < a.minX - kSamePointPx;
}

/// Calls `visit(a, b)` for all pairs of balloons that come near each other. Sweeps from left to right over the extents:
/// a pair is looked at only while their x ranges overlap.
template <class Visit>
void ForEachNearPair(const std::vector<Balloon>& balloons, const Visit& visit) {
  std::vector<Box2> extents;
  for (const Balloon& balloon : balloons) extents.push_back(Extent(balloon));
  std::vector<std::size_t> order(balloons.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return extents[a].minX < extents[b].minX; });
  for (std::size_t i = 0; i < order.size(); ++i) {
    const std::size_t a = order[i];
    for (std::size_t k = i + 1; k < order.size(); ++k) {
      const std::size_t b = order[k];
      if (extents[b].minX > extents[a].maxX + kSamePointPx) break;
      if (!Apart(extents[a], extents[b])) visit(a, b);
    }
  }
}

std::vector<std::size_t> IndicesOf(const std::vector<bool>& marked) {
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i < marked.size(); ++i) {
    if (marked[i]) indices.push_back(i);
  }
  return indices;
}

}  // namespace

bool Overlap(const Box2& a, const Box2& b) {
  return std::min(a.maxX, b.maxX) - std::max(a.minX, b.minX) > kOverlapPx &&
         std::min(a.maxY, b.maxY) - std::max(a.minY, b.minY) > kOverlapPx;
}

bool Leaves(const Box2& box, const Box2& room) {
  return box.minX < room.minX - kOverlapPx || box.minY < room.minY - kOverlapPx || box.maxX > room.maxX + kOverlapPx ||
         box.maxY > room.maxY + kOverlapPx;
}

std::vector<BalloonConflict> FindConflicts(const std::vector<Balloon>& balloons) {
  using Kind = BalloonConflict::Kind;
  std::vector<BalloonConflict> conflicts;
  ForEachNearPair(balloons, [&](std::size_t x, std::size_t y) {
    const std::size_t a = std::min(x, y), b = std::max(x, y);
    if (Overlap(balloons[a].box, balloons[b].box)) conflicts.push_back({Kind::LabelsOverlap, a, b});
    if (AnyLeaderThrough(balloons[a], balloons[b].box)) conflicts.push_back({Kind::LeaderThrough, a, b});
    if (AnyLeaderThrough(balloons[b], balloons[a].box)) conflicts.push_back({Kind::LeaderThrough, b, a});
    if (AnyLeadersMeet(balloons[a], balloons[b])) conflicts.push_back({Kind::LeadersMeet, a, b});
  });
  std::ranges::sort(conflicts, {}, [](const BalloonConflict& c) { return std::tuple(c.first, c.second, c.kind); });
  return conflicts;
}

LayoutFaults CountLayoutFaults(const std::vector<Balloon>& balloons, const std::vector<Box2>& drawings) {
  LayoutFaults faults;
  for (const Balloon& balloon : balloons) {
    const auto covers = [&](const Box2& drawing) { return Overlap(balloon.box, drawing); };
    faults.labelsOverModel += std::any_of(drawings.begin(), drawings.end(), covers) ? 1 : 0;
  }
  for (const BalloonConflict& conflict : FindConflicts(balloons)) {
    ++(conflict.kind == BalloonConflict::Kind::LeadersMeet ? faults.leaderCrossings : faults.labelOverlaps);
  }
  return faults;
}

std::vector<std::size_t> FindTangledBalloons(const std::vector<Balloon>& balloons) {
  std::vector<bool> tangled(balloons.size(), false);
  for (const BalloonConflict& conflict : FindConflicts(balloons)) {
    if (conflict.kind == BalloonConflict::Kind::LabelsOverlap) continue;
    tangled[conflict.first] = true;
    if (conflict.kind == BalloonConflict::Kind::LeadersMeet) tangled[conflict.second] = true;
  }
  return IndicesOf(tangled);
}

std::vector<std::size_t> FindMisplacedBalloons(const std::vector<Balloon>& balloons, const Box2& modelBox,
                                               const Box2& room) {
  std::vector<bool> misplaced(balloons.size(), false);
  for (const BalloonConflict& conflict : FindConflicts(balloons)) {
    misplaced[conflict.first] = misplaced[conflict.second] = true;
  }
  for (std::size_t i = 0; i < balloons.size(); ++i) {
    if (Overlap(balloons[i].box, modelBox) || Leaves(balloons[i].box, room)) misplaced[i] = true;
  }
  return IndicesOf(misplaced);
}

}  // namespace zrfigure
