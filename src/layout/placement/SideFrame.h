#pragma once
// The four sides of the frame round the model, each with coordinates of its own: u runs along the side in the direction
// of growing x or y, v outward from the frame's edge. What works on one side works on all.

#include <array>

#include "layout/placement/Scene.h"

namespace zrcallouts::placement {

enum class Side { Top, Right, Bottom, Left };

constexpr std::array<Side, 4> kSides{Side::Top, Side::Right, Side::Bottom, Side::Left};

/// A point or vector in the coordinates of a side.
struct SidePoint {
  Coord u = 0, v = 0;
};

/// One edge of a frame as a coordinate system.
class SideFrame {
public:
  SideFrame(const FixedBox& frame, Side side) : frame_(frame), side_(side) {}

  [[nodiscard]] bool IsRow() const { return side_ == Side::Top || side_ == Side::Bottom; }
  [[nodiscard]] SidePoint ToSide(FixedPoint point) const;
  [[nodiscard]] FixedPoint ToPage(SidePoint point) const;
  /// The box that spans `low` to `high`, corners in any order of x and y.
  [[nodiscard]] FixedBox ToPage(SidePoint low, SidePoint high) const;
  /// A page box as its low and high corner on this side.
  [[nodiscard]] std::pair<SidePoint, SidePoint> ToSide(const FixedBox& box) const;
  /// Size of an item along the side and away from it.
  [[nodiscard]] Coord Extent(const Item& item) const { return IsRow() ? item.width : item.height; }
  [[nodiscard]] Coord Depth(const Item& item) const { return IsRow() ? item.height : item.width; }
  /// Ends of the edge.
  [[nodiscard]] Coord Begin() const { return IsRow() ? frame_.left : frame_.top; }
  [[nodiscard]] Coord End() const { return IsRow() ? frame_.right : frame_.bottom; }

private:
  FixedBox frame_;
  Side side_;
};

}  // namespace zrcallouts::placement
