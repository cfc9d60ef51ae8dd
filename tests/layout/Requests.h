#pragma once
// Random requests for the label placement, and counts of what a result breaks by brute force.

#include <array>
#include <cmath>
#include <random>
#include <string>

#include "layout/placement/Audit.h"
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

inline FixedPoint Fixed(Point point) {
  return {ToFixed(point.x), ToFixed(point.y)};
}

inline FixedBox Fixed(const Box& box) {
  return {ToFixed(box.left), ToFixed(box.top), ToFixed(box.right), ToFixed(box.bottom)};
}

/// Whether a piece of a leader of the label fulfils `predicate(start, end, isFirstPiece)`.
template <class Predicate>
bool AnyPiece(const PlacedLabel& label, Predicate&& predicate) {
  for (const auto& leader : label.leaders)
    for (std::size_t i = 0; i + 1 < leader.size(); ++i)
      if (leader[i] != leader[i + 1] && predicate(Fixed(leader[i]), Fixed(leader[i + 1]), i == 0)) return true;
  return false;
}

inline bool DoLeadersMeet(const PlacedLabel& one, const PlacedLabel& other) {
  return AnyPiece(one, [&](FixedPoint a, FixedPoint b, bool first) {
    return AnyPiece(other, [&](FixedPoint c, FixedPoint d, bool second) {
      return first && second ? LeaderSegmentsMeet(a, b, c, d) : SegmentsMeet(a, b, c, d);
    });
  });
}

inline bool DoesLeaderEnter(const PlacedLabel& label, const Box& box) {
  return AnyPiece(label, [&](FixedPoint a, FixedPoint b, bool) { return SegmentEntersBox(a, b, Fixed(box)); });
}

/// What a result says about itself, in the order of its fields, labels without a place last.
using Counts = std::array<int, 8>;

inline Counts CountsOf(const PlacementResult& r) {
  return {r.leaderCrossings,   r.labelOverlaps,      r.leadersThroughLabels,    r.labelsOverModel,
          r.labelsOutsidePage, r.labelsOverObstacle, r.leadersThroughObstacles, r.unplaced};
}

/// What it ought to say: compares everything with everything by predicates with tests of their own, without any index.
inline Counts CountByBruteForce(const PlacementRequest& request, const PlacementResult& result) {
  PlacementResult counted;
  for (std::size_t i = 0; i < result.labels.size(); ++i) {
    const PlacedLabel& label = result.labels[i];
    counted.unplaced += !label.placed;
    if (!label.placed) continue;
    const Box& box = label.box;
    counted.labelsOverModel += BoxesOverlap(Fixed(box), Fixed(request.model));
    counted.labelsOutsidePage += !Fixed(request.page).Contains(Fixed(box));
    for (const Box& obstacle : request.obstacles) {
      counted.labelsOverObstacle += BoxesOverlap(Fixed(box), Fixed(obstacle));
      counted.leadersThroughObstacles += DoesLeaderEnter(label, obstacle);
    }
    for (std::size_t j = 0; j < result.labels.size(); ++j) {
      const PlacedLabel& other = result.labels[j];
      if (i == j || !other.placed) continue;
      counted.leadersThroughLabels += DoesLeaderEnter(label, other.box);
      counted.leaderCrossings += i < j && DoLeadersMeet(label, other);
      counted.labelOverlaps += i < j && BoxesOverlap(Fixed(box), Fixed(other.box));
    }
  }
  return CountsOf(counted);
}

}  // namespace zrcallouts::placement::testing
