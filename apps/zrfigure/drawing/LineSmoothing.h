#pragma once
// Repairs of polylines before they are drawn. Pixel units; ends stay where they are.

#include <vector>

#include "visibility/VectorMath.h"

namespace zrfigure {

[[nodiscard]] double PolylineLength(const std::vector<Point2>& points);

[[nodiscard]] double DistanceToSegment(Point2 p, Point2 a, Point2 b);

/// Drops points that lie less than `tolerance` off the line without them (D. Douglas, T. Peucker, 1973).
[[nodiscard]] std::vector<Point2> Simplified(const std::vector<Point2>& points, double tolerance);

/// Takes out wiggles of up to about ten pixels' length without shrinking the line (G. Taubin, "A signal processing
/// approach to fair surface design", 1995). Lines too short to hold one are returned as they are; a closed line stays
/// closed.
[[nodiscard]] std::vector<Point2> Smoothed(const std::vector<Point2>& points);

}  // namespace zrfigure
