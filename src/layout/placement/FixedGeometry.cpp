#include "layout/placement/FixedGeometry.h"

#include <algorithm>
#include <cmath>

namespace zrcallouts::placement {

namespace {

int Sign(Coord value) {
  return (value > 0) - (value < 0);
}

bool InBoundsOf(FixedPoint a, FixedPoint b, FixedPoint c) {
  return std::min(a.x, b.x) <= c.x && c.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= c.y &&
         c.y <= std::max(a.y, b.y);
}

}  // namespace

Coord ToFixed(double pixels) {
  if (std::isnan(pixels)) return 0;
  const double scaled = std::clamp(pixels * kUnitsPerPixel, -static_cast<double>(kLimit), static_cast<double>(kLimit));
  return std::llround(scaled);
}

double ToPixels(Coord value) {
  return static_cast<double>(value) / kUnitsPerPixel;
}

Point ToPixels(FixedPoint point) {
  return {ToPixels(point.x), ToPixels(point.y)};
}

Box ToPixels(const FixedBox& box) {
  return {ToPixels(box.left), ToPixels(box.top), ToPixels(box.right), ToPixels(box.bottom)};
}

Coord Orientation(FixedPoint a, FixedPoint b, FixedPoint c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double Distance(FixedPoint a, FixedPoint b) {
  const double dx = static_cast<double>(b.x - a.x), dy = static_cast<double>(b.y - a.y);
  return std::sqrt(dx * dx + dy * dy);
}

bool IsOnSegment(FixedPoint a, FixedPoint b, FixedPoint c) {
  return InBoundsOf(a, b, c) && Orientation(a, b, c) == 0;
}

bool SegmentsMeet(FixedPoint a, FixedPoint b, FixedPoint c, FixedPoint d) {
  if (std::max(a.x, b.x) < std::min(c.x, d.x) || std::max(c.x, d.x) < std::min(a.x, b.x) ||
      std::max(a.y, b.y) < std::min(c.y, d.y) || std::max(c.y, d.y) < std::min(a.y, b.y))
    return false;
  const int abc = Sign(Orientation(a, b, c)), abd = Sign(Orientation(a, b, d));
  const int cda = Sign(Orientation(c, d, a)), cdb = Sign(Orientation(c, d, b));
  if (abc * abd < 0 && cda * cdb < 0) return true;
  return (abc == 0 && InBoundsOf(a, b, c)) || (abd == 0 && InBoundsOf(a, b, d)) || (cda == 0 && InBoundsOf(c, d, a)) ||
         (cdb == 0 && InBoundsOf(c, d, b));
}

bool BoxesOverlap(const FixedBox& a, const FixedBox& b) {
  return std::max(a.left, b.left) < std::min(a.right, b.right) && std::max(a.top, b.top) < std::min(a.bottom, b.bottom);
}

bool SegmentEntersBox(FixedPoint a, FixedPoint b, const FixedBox& box) {
  if (box.left >= box.right || box.top >= box.bottom) return false;
  if (std::max(a.x, b.x) <= box.left || std::min(a.x, b.x) >= box.right || std::max(a.y, b.y) <= box.top ||
      std::min(a.y, b.y) >= box.bottom)
    return false;
  // The bounding rectangles overlap, so the segment enters unless all four corners lie on one closed side of its line.
  const auto [low, high] =
      std::minmax({Orientation(a, b, {box.left, box.top}), Orientation(a, b, {box.right, box.top}),
                   Orientation(a, b, {box.left, box.bottom}), Orientation(a, b, {box.right, box.bottom})});
  return low < 0 && high > 0;
}

FixedPoint NearestInBox(FixedPoint point, const FixedBox& box) {
  return {std::clamp(point.x, box.left, box.right), std::clamp(point.y, box.top, box.bottom)};
}

FixedPoint NearestOnBorder(FixedPoint point, const FixedBox& box) {
  const FixedPoint in = NearestInBox(point, box);
  const Coord left = in.x - box.left, right = box.right - in.x, top = in.y - box.top, bottom = box.bottom - in.y;
  const Coord least = std::min({left, right, top, bottom});
  if (least == left) return {box.left, in.y};
  if (least == right) return {box.right, in.y};
  return {in.x, least == top ? box.top : box.bottom};
}

}  // namespace zrcallouts::placement
