#include "layout/placement/Placement.h"

#include <algorithm>

#include <cstdio>
#include <cstdlib>
#include "layout/placement/Audit.h"
#include "layout/placement/FreePlacement.h"
#include "layout/placement/HullSweep.h"
#include "layout/placement/SideAssignment.h"
#include "layout/placement/SlotMatching.h"

namespace zrcallouts::placement {

namespace {

SpotList PlaceOnRings(const Scene& scene, const FixedBox& frame, int rings) {
  SpotList spots(scene.items.size());
  const SideAssignment assignment = AssignSides(scene, frame, rings);
  for (std::size_t s = 0; s < kSides.size(); ++s) {
    RingTask task = MakeRingTask(scene, frame, kSides[s]);
    task.rings = rings;
    std::vector<std::size_t> members;
    for (const std::size_t i : assignment.members[s])
      if (!scene.items[i].anchors.empty()) members.push_back(i);
    task.portLow = assignment.portLow[s];
    task.portHigh = assignment.portHigh[s];
    HullSweep(scene, task, members, spots);
  }
  return spots;
}

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
  for (int rings = 1; rings <= scene.maxRings; ++rings) {
    if (std::getenv("SWEEP")) consider(PlaceOnRings(scene, frame, rings));
    for (const Coord gap : {6 * 16, 4 * 16, 2 * 16}) {
      SpotList spots(scene.items.size());
      SlotPlan plan{frame, {rings, rings, rings, rings}, gap, gap / 2};
      const bool ok = MatchToSlots(scene, plan, spots);
      if (!ok) continue;
      if (std::getenv("DBG")) {
        const Tally t = Audit(scene, spots);
        fprintf(stderr, "rings %d gap %d slots %zu: x %d len %.0f bends %d\n", rings, int(gap / 16),
                MakeSlots(scene, plan).size(), t.crossings, t.length / 16, t.bends);
      }
      consider(std::move(spots));
    }
  }
  return MakeResult(request, scene, best);
}

}  // namespace zrcallouts::placement
