#pragma once
// Plain points and boxes in pixels, y down: what callers of the label placement hand over and get back.

namespace zrcallouts::placement {

struct Point {
  double x = 0, y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

/// Axis-parallel rectangle with left <= right and top <= bottom.
struct Box {
  double left = 0, top = 0, right = 0, bottom = 0;
  friend bool operator==(const Box&, const Box&) = default;
};

}  // namespace zrcallouts::placement
