#include "layout/placement/Audit.h"

#include <algorithm>
#include <tuple>

#include "layout/placement/GridIndex.h"

namespace zrcallouts::placement {

namespace {

void AuditPairs(const Scene& scene, const SpotList& spots, Tally& tally) {
  GridIndex boxes(scene.page, scene.items.size()), leaders(scene.page, scene.items.size());
  std::vector<std::uint32_t> near;
  for (std::uint32_t i = 0; i < spots.size(); ++i) {
    if (!spots[i].placed) continue;
    const auto collect = [&](const GridIndex& index) {
      near.clear();
      index.StartQuery();
      ForEachSegment(scene.items[i], spots[i],
                     [&](FixedPoint a, FixedPoint b) { index.CollectNearSegment(a, b, near); });
    };
    collect(leaders);
    for (const std::uint32_t j : near)
      tally.crossings += LeadersMeet(scene.items[i], spots[i], scene.items[j], spots[j]);
    collect(boxes);
    for (const std::uint32_t j : near)
      tally.leadersThroughLabels += LeaderEntersBox(scene.items[i], spots[i], spots[j].box);
    near.clear();
    leaders.StartQuery();
    leaders.CollectNearBox(spots[i].box, near);
    for (const std::uint32_t j : near)
      tally.leadersThroughLabels += LeaderEntersBox(scene.items[j], spots[j], spots[i].box);
    near.clear();
    boxes.StartQuery();
    boxes.CollectNearBox(spots[i].box, near);
    for (const std::uint32_t j : near) tally.labelOverlaps += BoxesOverlap(spots[i].box, spots[j].box);

    boxes.InsertBox(i, spots[i].box);
    ForEachSegment(scene.items[i], spots[i], [&](FixedPoint a, FixedPoint b) { leaders.InsertSegment(i, a, b); });
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
  bool meet = false;
  ForEachSegment(itemA, spotA, [&](FixedPoint a, FixedPoint b) {
    ForEachSegment(itemB, spotB, [&](FixedPoint c, FixedPoint d) { meet = meet || LeaderSegmentsMeet(a, b, c, d); });
  });
  return meet;
}

bool LeaderEntersBox(const Item& item, const LabelSpot& spot, const FixedBox& box) {
  bool enters = false;
  ForEachSegment(item, spot, [&](FixedPoint a, FixedPoint b) { enters = enters || SegmentEntersBox(a, b, box); });
  return enters;
}

Tally Audit(const Scene& scene, const SpotList& spots) {
  Tally tally;
  AuditPairs(scene, spots, tally);
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

}  // namespace zrcallouts::placement
