#include "layout/placement/Placement.h"

#include "layout/placement/Audit.h"
#include "layout/placement/PlacementSearch.h"

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
  return MakeResult(request, scene, PlacementSearch(scene).Run());
}

}  // namespace zrcallouts::placement
