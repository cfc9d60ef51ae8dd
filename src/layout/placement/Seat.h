#pragma once
// Places on the sides of a frame, and how labels stand on them.

#include <vector>

#include "layout/placement/RingPlan.h"
#include "layout/placement/Scene.h"
#include "layout/placement/SideFrame.h"

namespace zrcallouts::placement {

/// A place on a side: its box is what a label may take up there.
struct Seat {
  LabelSpot spot;
  std::size_t side = 0;  ///< Index into kSides.
};

/// Something on the page in the coordinates of a side.
struct SideBox {
  SidePoint low, high;
};

/// What labels and lanes outside the frame have to keep off on this side: obstacles, and anchors outside the frame.
[[nodiscard]] std::vector<SideBox> Hindrances(const Scene& scene, const SideFrame& edge);

/// Whether the item is no bigger than the seat's box.
[[nodiscard]] bool Fits(const Item& item, const Seat& seat);

/// The item on the seat: next to the frame and centred on the port as far as the seat's box allows. Leaders of anchors
/// outside the frame end at the nearest point of the label.
[[nodiscard]] LabelSpot SpotOn(const Item& item, const Seat& seat, const FixedBox& frame);

}  // namespace zrcallouts::placement
