#include "layout/placement/Seat.h"

#include <algorithm>

namespace zrcallouts::placement {

std::vector<SideBox> Hindrances(const Scene& scene, const SideFrame& edge) {
  std::vector<SideBox> boxes;
  const auto add = [&](const FixedBox& box) {
    const auto [low, high] = edge.ToSide(box);
    if (high.v > 0) boxes.push_back({low, high});
  };
  for (const FixedBox& obstacle : scene.obstacles) add(obstacle);
  for (const Item& item : scene.items)
    for (const FixedPoint anchor : item.anchors)
      if (edge.ToSide(anchor).v > 0) add(FixedBox{anchor.x, anchor.y, anchor.x, anchor.y}.Grown(1));
  return boxes;
}

bool Fits(const Item& item, const Seat& seat) {
  return item.width <= seat.spot.box.Width() && item.height <= seat.spot.box.Height();
}

LabelSpot SpotOn(const Item& item, const Seat& seat, const FixedBox& frame) {
  const SideFrame edge(frame, kSides[seat.side]);
  const auto [low, high] = edge.ToSide(seat.spot.box);
  const Coord extent = edge.Extent(item), port = edge.ToSide(seat.spot.port).u;
  const Coord from = std::clamp(port - extent / 2, low.u, std::max(low.u, high.u - extent));
  LabelSpot spot = seat.spot;
  spot.box = edge.ToPage({from, low.v}, {from + extent, low.v + edge.Depth(item)});
  if (edge.ToSide(item.focus).v > 0) spot.port = spot.attach = NearestInBox(item.focus, spot.box);
  return spot;
}

}  // namespace zrcallouts::placement
