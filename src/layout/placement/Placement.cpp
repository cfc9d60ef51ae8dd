#include "layout/placement/Placement.h"

#include <algorithm>

#include <cstdio>
#include <cstdlib>
#include "layout/placement/Audit.h"
#include "layout/placement/FreePlacement.h"
#include "layout/placement/SideAssignment.h"
#include "layout/placement/SideSweeps.h"
#include "layout/placement/SlotMatching.h"

namespace zrcallouts::placement {

namespace {

PlacementResult MakeResult(const PlacementRequest& request, const Scene& scene, const SpotList& spots) {
  const Tally tally = Audit(scene, spots);
  PlacementResult result;
  result.leaderCrossings = tally.crossings;
  result.labelOverlaps = tally.labelOverlaps;
  result.leadersThroughLabels = tally.leadersThroughLabels;
  result.labelsOverModel = tally.labelsOverModel;
  result.labelsOutsidePage = tally.labelsOutsidePage;
  result.labelsOverObstacle = tally.labelsOverObstacle;
  result.leadersThroughObstacles = tally.leadersThroughObstacles;
  result.unplaced = tally.unplaced;
  result.status = tally.IsClean()       ? PlacementStatus::Complete
                  : tally.unplaced == 0 ? PlacementStatus::Degraded
                                        : PlacementStatus::Incomplete;
  result.labels.resize(request.labels.size());
  for (std::size_t i = 0; i < spots.size(); ++i) {
    if (!spots[i].placed) continue;
    PlacedLabel& label = result.labels[scene.items[i].input];
    label.placed = true;
    label.box = ToPixels(spots[i].box);
    for (const FixedPoint anchor : scene.items[i].anchors) {
      auto& leader = label.leaders.emplace_back();
      leader.push_back(ToPixels(anchor));
      if (spots[i].port != spots[i].attach) leader.push_back(ToPixels(spots[i].port));
      leader.push_back(ToPixels(spots[i].attach));
    }
  }
  return result;
}

}  // namespace

PlacementResult PlaceLabels(const PlacementRequest& request) {
  const Scene scene = MakeScene(request);
  SpotList best;
  Tally bestTally;
  const auto consider = [&](SpotList spots) {
    PlaceFreely(scene, spots);
    const Tally tally = Audit(scene, spots);
    if (!best.empty() && !tally.IsBetterThan(bestTally)) return;
    best = std::move(spots);
    bestTally = tally;
  };
  const FixedBox frame = scene.model.Grown(scene.clearance);
  bool uniform = true;
  double mw = 0, mh = 0, sw = 0, sh = 0;
  for (auto& a : scene.items) {
    mw = std::max(mw, double(a.width));
    mh = std::max(mh, double(a.height));
    sw += double(a.width);
    sh += double(a.height);
  }
  uniform = mw * double(scene.items.size()) <= 1.5 * sw && mh * double(scene.items.size()) <= 1.5 * sh;
  if (uniform)
    for (const Coord gap : {scene.gap, scene.gap * 2 / 3, scene.gap / 2}) {
      for (int rings = 1; rings <= scene.maxRings; ++rings) {
        SpotList spots(scene.items.size());
        RingPlan plan{frame, {rings, rings, rings, rings}, gap, gap / 2};
        const size_t n = MakeSlots(scene, plan).size();
        if (scene.items.size() > 300 && n < scene.items.size() * 1.2 && rings < scene.maxRings) continue;
        const bool ok = MatchToSlots(scene, plan, spots);
        if (!ok) continue;
        const Tally t = Audit(scene, spots);
        if (std::getenv("DBG")) {
          fprintf(stderr, "rings %d gap %d slots %zu: x %d len %.0f bends %d\n", rings, int(gap / 16), n, t.crossings,
                  t.length / 16, t.bends);
        }
        const bool better = best.empty() || t.IsBetterThan(bestTally);
        consider(std::move(spots));
        if (!better || scene.items.size() > 300) break;
      }
      if (!best.empty()) break;
    }
  if (!uniform)
    for (double stacking : {1.0, 1.2, 1.5})
      for (int grow : {0, 30, 60, 90})
        for (int rows = 1; rows <= 4; ++rows)
          for (int cols = 1; cols <= 4; ++cols) {
            RingPlan plan{frame.Grown(grow * 16), {rows, cols, rows, cols}, scene.gap, scene.gap / 2};
            SpotList spots = SweepSides(scene, plan, stacking);
            const Tally t = Audit(scene, spots);
            if (std::getenv("DBG")) {
              fprintf(stderr, "st %.1f grow %d rows %d cols %d: unplaced %d x %d len %.0f bends %d\n", stacking, grow,
                      rows, cols, t.unplaced, t.crossings, t.length / 16, t.bends);
            }
            consider(std::move(spots));
          }
  if (best.empty()) consider(SpotList(scene.items.size()));
  return MakeResult(request, scene, best);
}

}  // namespace zrcallouts::placement
