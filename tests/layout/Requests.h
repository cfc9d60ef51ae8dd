#pragma once
// Random requests for the label placement, and counts of what a result breaks that share no code with the placement.

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include "layout/placement/Placement.h"

namespace zrcallouts::placement::testing {

/// How a random request is made.
struct RequestShape {
  std::string name;
  int labels = 20;
  double pageWidth = 1600, pageHeight = 1000;
  double fill = 0.58;       ///< Share of the page's width and height that the model takes.
  bool mixedSizes = false;  ///< Labels of very different sizes instead of balloons.
  int mostAnchors = 1;
  int obstacles = 0;
};

inline PlacementRequest RandomRequest(const RequestShape& shape, unsigned seed) {
  std::mt19937 random(seed);
  const auto between = [&](double low, double high) {
    return std::floor((low + (high - low) * static_cast<double>(random()) / 4294967296.0) * 4) / 4;
  };
  PlacementRequest request;
  request.page = {0, 0, shape.pageWidth, shape.pageHeight};
  const double marginX = shape.pageWidth * (1 - shape.fill) / 2, marginY = shape.pageHeight * (1 - shape.fill) / 2;
  const Box& model = request.model = {marginX, marginY, shape.pageWidth - marginX, shape.pageHeight - marginY};
  for (int i = 0; i < shape.labels; ++i) {
    LabelRequest label{std::to_string(i), between(22, 39), 24, {}};
    if (shape.mixedSizes) {
      label.width = between(20, 160);
      label.height = 24.0 * (1 + random() % 3);
    }
    const unsigned anchors = 1 + random() % static_cast<unsigned>(shape.mostAnchors);
    for (unsigned k = 0; k < anchors; ++k)
      label.anchors.push_back({between(model.left, model.right), between(model.top, model.bottom)});
    request.labels.push_back(label);
  }
  for (int i = 0; i < shape.obstacles; ++i) {
    const double x = between(0, shape.pageWidth - 90), y = between(0, shape.pageHeight - 40);
    request.obstacles.push_back({x, y, x + 80, y + 30});
  }
  return request;
}

namespace brute {

inline double Cross(Point a, Point b, Point c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

inline bool On(Point a, Point b, Point p) {
  return Cross(a, b, p) == 0 && std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
         p.y <= std::max(a.y, b.y);
}

/// Closed segments, a shared first point aside unless they overlap beyond it.
inline bool Meet(Point a, Point b, Point c, Point d, bool shareFirst) {
  if (a == b || c == d) return false;
  if (shareFirst && a == c) return On(a, b, d) || On(c, d, b);
  if (On(a, b, c) || On(a, b, d) || On(c, d, a) || On(c, d, b)) return true;
  return Cross(a, b, c) * Cross(a, b, d) < 0 && Cross(c, d, a) * Cross(c, d, b) < 0;
}

inline bool Overlap(const Box& a, const Box& b) {
  return std::min(a.right, b.right) > std::max(a.left, b.left) && std::min(a.bottom, b.bottom) > std::max(a.top, b.top);
}

/// Clips the segment to the open box (Liang and Barsky) and asks whether a piece is left.
inline bool Through(Point a, Point b, const Box& box) {
  double from = 0, to = 1;
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double p[] = {-dx, dx, -dy, dy}, q[] = {a.x - box.left, box.right - a.x, a.y - box.top, box.bottom - a.y};
  for (int k = 0; k < 4; ++k) {
    if (p[k] == 0 && q[k] <= 0) return false;
    if (p[k] < 0) from = std::max(from, q[k] / p[k]);
    if (p[k] > 0) to = std::min(to, q[k] / p[k]);
  }
  return to - from > 1e-9;
}

template <class Predicate>
bool AnyPiece(const PlacedLabel& label, Predicate&& predicate) {
  for (const auto& leader : label.leaders)
    for (std::size_t i = 0; i + 1 < leader.size(); ++i)
      if (predicate(leader[i], leader[i + 1], i == 0)) return true;
  return false;
}

inline bool LeadersMeet(const PlacedLabel& one, const PlacedLabel& other) {
  return AnyPiece(one, [&](Point a, Point b, bool first) {
    return AnyPiece(other, [&](Point c, Point d, bool second) { return Meet(a, b, c, d, first && second); });
  });
}

inline bool Enters(const PlacedLabel& label, const Box& box) {
  return AnyPiece(label, [&](Point a, Point b, bool) { return Through(a, b, box); });
}

}  // namespace brute

/// What a result says about itself, or ought to say, in the order of the fields of PlacementResult.
struct Counts {
  int crossings = 0, overlaps = 0, throughLabels = 0, overModel = 0, outsidePage = 0, overObstacle = 0,
      throughObstacles = 0, unplaced = 0;
  bool operator==(const Counts&) const = default;
};

inline Counts CountsOf(const PlacementResult& r) {
  return {r.leaderCrossings,   r.labelOverlaps,      r.leadersThroughLabels,    r.labelsOverModel,
          r.labelsOutsidePage, r.labelsOverObstacle, r.leadersThroughObstacles, r.unplaced};
}

/// Compares everything with everything.
inline Counts CountByBruteForce(const PlacementRequest& request, const PlacementResult& result) {
  Counts counts;
  for (std::size_t i = 0; i < result.labels.size(); ++i) {
    const PlacedLabel& label = result.labels[i];
    counts.unplaced += !label.placed;
    if (!label.placed) continue;
    const Box &box = label.box, &page = request.page;
    counts.overModel += brute::Overlap(box, request.model);
    counts.outsidePage +=
        box.left < page.left || box.top < page.top || box.right > page.right || box.bottom > page.bottom;
    for (const Box& obstacle : request.obstacles) {
      counts.overObstacle += brute::Overlap(box, obstacle);
      counts.throughObstacles += brute::Enters(label, obstacle);
    }
    for (std::size_t j = 0; j < result.labels.size(); ++j) {
      const PlacedLabel& other = result.labels[j];
      if (i == j || !other.placed) continue;
      counts.throughLabels += brute::Enters(label, other.box);
      counts.crossings += i < j && brute::LeadersMeet(label, other);
      counts.overlaps += i < j && brute::Overlap(box, other.box);
    }
  }
  return counts;
}

}  // namespace zrcallouts::placement::testing
