#include "layout/placement/Audit.h"

#include <algorithm>
#include <tuple>

#include "layout/placement/GridIndex.h"

namespace zrcallouts::placement {

namespace {

/// Calls onCrossing(i, j), onThrough(i, j) where a leader of i enters the box of j, and onOverlap(i, j) once for each
/// such pair of items.
template <class OnCrossing, class OnThrough, class OnOverlap>
void VisitConflicts(const Scene& scene, const SpotList& spots, OnCrossing&& onCrossing, OnThrough&& onThrough,
                    OnOverlap&& onOverlap) {
  GridIndex boxes(scene.page, scene.items.size()), leaders(scene.page, scene.items.size());
  std::vector<std::uint32_t> near;
  for (std::uint32_t i = 0; i < spots.size(); ++i) {
    if (!spots[i].placed) continue;
    const Item& item = scene.items[i];
    const auto nearLeaders = [&](const GridIndex& index) -> const std::vector<std::uint32_t>& {
      near.clear();
      index.StartQuery();
      ForEachSegment(item, spots[i], [&](FixedPoint a, FixedPoint b) { index.CollectNearSegment(a, b, near); });
      return near;
    };
    const auto nearBox = [&](const GridIndex& index) -> const std::vector<std::uint32_t>& {
      near.clear();
      index.StartQuery();
      index.CollectNearBox(spots[i].box, near);
      return near;
    };
    for (const std::uint32_t j : nearLeaders(leaders))
      if (LeadersMeet(item, spots[i], scene.items[j], spots[j])) onCrossing(i, j);
    for (const std::uint32_t j : nearLeaders(boxes))
      if (LeaderEntersBox(item, spots[i], spots[j].box)) onThrough(i, j);
    for (const std::uint32_t j : nearBox(leaders))
      if (LeaderEntersBox(scene.items[j], spots[j], spots[i].box)) onThrough(j, i);
    for (const std::uint32_t j : nearBox(boxes))
      if (BoxesOverlap(spots[i].box, spots[j].box)) onOverlap(i, j);
    boxes.InsertBox(i, spots[i].box);
    ForEachSegment(item, spots[i], [&](FixedPoint a, FixedPoint b) { leaders.InsertSegment(i, a, b); });
  }
}

}  // namespace

bool Tally::IsClean() const {
  return crossings + labelOverlaps + leadersThroughLabels + labelsOverModel + labelsOutsidePage + labelsOverObstacle +
             leadersThroughObstacles + unplaced ==
         0;
}

bool Tally::IsBetterThan(const Tally& other) const {
  const auto key = [&](const Tally& t) {
    return std::make_tuple(t.unplaced, t.labelOverlaps + t.labelsOverObstacle + t.labelsOutsidePage,
                           t.crossings + t.leadersThroughLabels, t.labelsOverModel,
                           t.length + kBendCost * t.bends + kObstacleCost * t.leadersThroughObstacles);
  };
  return key(*this) < key(other);
}

bool LeaderSegmentsMeet(FixedPoint a, FixedPoint b, FixedPoint c, FixedPoint d) {
  if (!SegmentsMeet(a, b, c, d)) return false;
  if (a != c) return true;
  return IsOnSegment(a, b, d) || IsOnSegment(c, d, b);
}

bool LeadersMeet(const Item& itemA, const LabelSpot& spotA, const Item& itemB, const LabelSpot& spotB) {
  return AnySegment(itemA, spotA, [&](FixedPoint a, FixedPoint b) {
    return AnySegment(itemB, spotB, [&](FixedPoint c, FixedPoint d) { return LeaderSegmentsMeet(a, b, c, d); });
  });
}

bool LeaderEntersBox(const Item& item, const LabelSpot& spot, const FixedBox& box) {
  return AnySegment(item, spot, [&](FixedPoint a, FixedPoint b) { return SegmentEntersBox(a, b, box); });
}

Tally Audit(const Scene& scene, const SpotList& spots) {
  Tally tally;
  VisitConflicts(
      scene, spots, [&](std::size_t, std::size_t) { ++tally.crossings; },
      [&](std::size_t, std::size_t) { ++tally.leadersThroughLabels; },
      [&](std::size_t, std::size_t) { ++tally.labelOverlaps; });
  for (std::size_t i = 0; i < spots.size(); ++i) {
    const LabelSpot& spot = spots[i];
    if (!spot.placed) {
      ++tally.unplaced;
      continue;
    }
    tally.labelsOutsidePage += !scene.page.Contains(spot.box);
    tally.labelsOverModel += BoxesOverlap(spot.box, scene.model);
    for (const FixedBox& obstacle : scene.obstacles) {
      tally.labelsOverObstacle += BoxesOverlap(spot.box, obstacle);
      tally.leadersThroughObstacles += LeaderEntersBox(scene.items[i], spot, obstacle);
    }
    tally.length += LeaderLength(scene.items[i], spot);
    tally.bends += spot.port != spot.attach ? static_cast<int>(scene.items[i].anchors.size()) : 0;
  }
  return tally;
}

std::vector<std::size_t> Troublemakers(const Scene& scene, const SpotList& spots) {
  std::vector<bool> trouble(spots.size(), false);
  const auto blameLonger = [&](std::size_t i, std::size_t j) {
    const bool first = LeaderLength(scene.items[i], spots[i]) > LeaderLength(scene.items[j], spots[j]);
    trouble[first ? i : j] = true;
  };
  VisitConflicts(
      scene, spots, blameLonger, [&](std::size_t i, std::size_t) { trouble[i] = true; }, blameLonger);
  std::vector<std::size_t> items;
  for (std::size_t i = 0; i < trouble.size(); ++i)
    if (trouble[i]) items.push_back(i);
  return items;
}

}  // namespace zrcallouts::placement
