#pragma once
// Counts what a proposed placement breaks: the judge of every step of the placement and the source of the result's
// counts.

#include <vector>

#include "layout/placement/Scene.h"

namespace zrcallouts::placement {

/// What a bend and a leader over an obstacle are worth in leader length, in raster units.
constexpr double kBendCost = 30.0 * kUnitsPerPixel;
constexpr double kObstacleCost = 1500.0 * kUnitsPerPixel;

/// What a placement breaks and what it costs. Counts as in PlacementResult; lengths in raster units.
struct Tally {
  int crossings = 0, labelOverlaps = 0, leadersThroughLabels = 0, labelsOverModel = 0, labelsOutsidePage = 0;
  int labelsOverObstacle = 0, leadersThroughObstacles = 0, unplaced = 0;
  double length = 0;
  int bends = 0;

  /// Whether nothing is broken.
  [[nodiscard]] bool IsClean() const;
  /// Whether this placement is the better one: fewest labels without a place, then fewest overlaps, then fewest
  /// crossings, then labels off the model, then the shortest leaders, a bend counting as a detour.
  [[nodiscard]] bool IsBetterThan(const Tally& other) const;
};

/// Whether the leader pieces ab and cd of two items meet, where starting in one and the same anchor does not count.
[[nodiscard]] bool LeaderSegmentsMeet(FixedPoint a, FixedPoint b, FixedPoint c, FixedPoint d);

/// Whether leaders of the two items cross or touch, one shared anchor point aside.
[[nodiscard]] bool LeadersMeet(const Item& itemA, const LabelSpot& spotA, const Item& itemB, const LabelSpot& spotB);

/// Whether a leader of the item passes through the interior of the box.
[[nodiscard]] bool LeaderEntersBox(const Item& item, const LabelSpot& spot, const FixedBox& box);

/// Counts over a grid index: about linear in the number of labels plus the pairs that come near each other.
[[nodiscard]] Tally Audit(const Scene& scene, const SpotList& spots);

/// Items whose removal leaves no two leaders that cross, no leader through a label and no overlapping labels.
[[nodiscard]] std::vector<std::size_t> Troublemakers(const Scene& scene, const SpotList& spots);

}  // namespace zrcallouts::placement
