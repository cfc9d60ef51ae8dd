#pragma once
// Geometry on the raster the placement computes with: 1/16 pixel in 64-bit integers, so that every predicate is exact.
// Coordinates stay within +-kLimit, which keeps products of differences far from overflow.

#include <compare>
#include <cstdint>

#include "layout/placement/Geometry.h"

namespace zrcallouts::placement {

using Coord = std::int64_t;

constexpr Coord kUnitsPerPixel = 16;
constexpr Coord kLimit = Coord{1} << 28;

struct FixedPoint {
  Coord x = 0, y = 0;
  friend auto operator<=>(const FixedPoint&, const FixedPoint&) = default;
};

struct FixedBox {
  Coord left = 0, top = 0, right = 0, bottom = 0;
  friend auto operator<=>(const FixedBox&, const FixedBox&) = default;

  [[nodiscard]] Coord Width() const { return right - left; }
  [[nodiscard]] Coord Height() const { return bottom - top; }
  [[nodiscard]] FixedBox Grown(Coord by) const { return {left - by, top - by, right + by, bottom + by}; }
  [[nodiscard]] bool Contains(const FixedBox& other) const {
    return left <= other.left && top <= other.top && other.right <= right && other.bottom <= bottom;
  }
};

/// Nearest raster coordinate within the limits; 0 for a value that is not a number.
[[nodiscard]] Coord ToFixed(double pixels);
[[nodiscard]] double ToPixels(Coord value);
[[nodiscard]] Point ToPixels(FixedPoint point);
[[nodiscard]] Box ToPixels(const FixedBox& box);

/// Twice the signed area of the triangle a, b, c.
[[nodiscard]] Coord Orientation(FixedPoint a, FixedPoint b, FixedPoint c);

/// Euclidean distance in raster units.
[[nodiscard]] double Distance(FixedPoint a, FixedPoint b);

/// Whether c lies on the closed segment ab.
[[nodiscard]] bool IsOnSegment(FixedPoint a, FixedPoint b, FixedPoint c);

/// Whether the closed segments ab and cd share a point.
[[nodiscard]] bool SegmentsMeet(FixedPoint a, FixedPoint b, FixedPoint c, FixedPoint d);

/// Whether the interiors of the boxes meet; a box without area meets nothing.
[[nodiscard]] bool BoxesOverlap(const FixedBox& a, const FixedBox& b);

/// Whether segment ab passes through the interior of the box; running along an edge does not count.
[[nodiscard]] bool SegmentEntersBox(FixedPoint a, FixedPoint b, const FixedBox& box);

/// Point of the closed box that is nearest to `point`.
[[nodiscard]] FixedPoint NearestInBox(FixedPoint point, const FixedBox& box);

/// Point of the box's border that is nearest to `point`.
[[nodiscard]] FixedPoint NearestOnBorder(FixedPoint point, const FixedBox& box);

}  // namespace zrcallouts::placement
