#pragma once
// Deals the items out to the sides of a frame.

#include <array>
#include <vector>

#include "layout/placement/SideFrame.h"

namespace zrcallouts::placement {

/// Items of each side and the piece of each edge that leaders of the side may end on.
struct SideAssignment {
  std::array<std::vector<std::size_t>, 4> members;  ///< Indices into the scene's items, ascending.
  std::array<Coord, 4> portLow{}, portHigh{};       ///< In the u coordinate of the side.
};

/// Gives each item with anchors the side with the least distance plus a bias, where biases of over-full sides rise
/// until they are not, or until all sides are full alike. The regions of the sides are convex and disjoint, and so are
/// their pieces of the frame: straight leaders of different sides cannot meet. `capacity` is the room along each side
/// in all its rings together.
[[nodiscard]] SideAssignment AssignSides(const Scene& scene, const FixedBox& frame,
                                         const std::array<double, 4>& capacity);

}  // namespace zrcallouts::placement
