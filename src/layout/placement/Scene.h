#pragma once
// The request on the raster, in an order of its own, and the spots that algorithms propose for its labels.

#include <cstddef>
#include <vector>

#include "layout/placement/FixedGeometry.h"
#include "layout/placement/Placement.h"

namespace zrcallouts::placement {

/// A label of the scene.
struct Item {
  Coord width = 0, height = 0;
  std::vector<FixedPoint> anchors;
  FixedPoint focus;       ///< Mean of the anchors: where the label would like to be near.
  std::size_t input = 0;  ///< Index in the request.
};

/// A request on the raster. Items stand in the order (focus y, focus x, id, size, anchors), which makes everything that
/// follows independent of the order of the request.
struct Scene {
  FixedBox page, model;
  std::vector<FixedBox> obstacles;
  std::vector<Item> items;
  Coord clearance = 0, gap = 0;
  int maxRings = 1;
};

/// A proposed place of an item: its leaders run from each anchor straight to `port` and from there to `attach` on the
/// box; both are the same point for leaders without a bend.
struct LabelSpot {
  bool placed = false;
  FixedBox box;
  FixedPoint port, attach;
};

/// One spot an item.
using SpotList = std::vector<LabelSpot>;

[[nodiscard]] Scene MakeScene(const PlacementRequest& request);

/// Calls visit(a, b) for each segment of the leaders of a placed item; the piece behind a common bend comes once.
template <class Visitor>
void ForEachSegment(const Item& item, const LabelSpot& spot, Visitor&& visit) {
  if (!spot.placed || item.anchors.empty()) return;
  for (const FixedPoint anchor : item.anchors)
    if (anchor != spot.port) visit(anchor, spot.port);
  if (spot.port != spot.attach) visit(spot.port, spot.attach);
}

/// Whether test(a, b) holds for one of the segments that ForEachSegment visits; the first ends the search.
template <class Test>
[[nodiscard]] bool AnySegment(const Item& item, const LabelSpot& spot, Test&& test) {
  if (!spot.placed || item.anchors.empty()) return false;
  for (const FixedPoint anchor : item.anchors)
    if (anchor != spot.port && test(anchor, spot.port)) return true;
  return spot.port != spot.attach && test(spot.port, spot.attach);
}

/// Length of all leaders of an item in raster units.
[[nodiscard]] double LeaderLength(const Item& item, const LabelSpot& spot);

}  // namespace zrcallouts::placement
