#pragma once
// Places labels round a model on a page and draws their leaders: a pure function of its request, without shared state.
// Lengths and coordinates are pixels, y down; results lie on a raster of 1/16 pixel. Callable from any thread.

#include <string>
#include <vector>

#include "layout/placement/Geometry.h"

namespace zrcallouts::placement {

/// One label to place. A label has one leader an anchor; without anchors it is put into free space without a leader.
/// Anchors with coordinates that are not finite are ignored; a size that is not finite or negative counts as 0.
struct LabelRequest {
  std::string id;  ///< Breaks ties; runs of digits compare as numbers, so "9" comes before "10".
  double width = 0, height = 0;
  std::vector<Point> anchors;
};

struct PlacementOptions {
  double clearance = 20;  ///< Least distance between the model's box and a label.
  double labelGap = 4;    ///< Wished distance between labels; shrinks to a third before labels are stacked or dropped.
  int maxRings = 8;       ///< Most rows or columns of labels on one side of the model; at least 1 is taken.
};

struct PlacementRequest {
  Box page;                    ///< Labels stay inside.
  Box model;                   ///< Labels stay outside by `clearance` while the page has room.
  std::vector<Box> obstacles;  ///< Labels that stand already, and whatever else must stay uncovered.
  std::vector<LabelRequest> labels;
  PlacementOptions options;
};

enum class PlacementStatus {
  Complete,   ///< Every label is placed and every rule holds.
  Degraded,   ///< Every label is placed, but at least one count of the result is not 0.
  Incomplete  ///< At least one label is not placed.
};

/// Where a label stands. Each leader runs from its anchor to the label's edge, straight or with one bend; where a label
/// has no place but on its own anchors, they end among these.
struct PlacedLabel {
  bool placed = false;
  Box box;
  std::vector<std::vector<Point>> leaders;  ///< One polyline an accepted anchor, in the order of the request.
};

/// The placement together with what it breaks. Counts leave out labels that are not placed.
struct PlacementResult {
  PlacementStatus status = PlacementStatus::Complete;
  int leaderCrossings = 0;          ///< Pairs of labels whose leaders cross or touch, one shared anchor point aside.
  int labelOverlaps = 0;            ///< Pairs of labels that overlap.
  int leadersThroughLabels = 0;     ///< Ordered pairs: a leader of the first label passes through the second.
  int labelsOverModel = 0;          ///< Labels that cover a piece of the model's box.
  int labelsOutsidePage = 0;        ///< Labels that leave the page.
  int labelsOverObstacle = 0;       ///< Pairs of a label and an obstacle that overlap.
  int leadersThroughObstacles = 0;  ///< Pairs of a label and an obstacle that one of its leaders passes through.
  int unplaced = 0;                 ///< Labels without a place.
  std::vector<PlacedLabel> labels;  ///< As many as requested, in the order of the request.
};

/// Places all labels of the request; never fails, whatever the request holds.
/// The result does not depend on the order of `labels` and `obstacles` and is the same on every run.
[[nodiscard]] PlacementResult PlaceLabels(const PlacementRequest& request);

}  // namespace zrcallouts::placement
