#pragma once
// Numbers and path data as SVG wants them, the same in every locale.

#include <string>
#include <vector>

#include "visibility/VectorMath.h"

namespace zrfigure {

/// Two decimals, no negative zero.
[[nodiscard]] std::string SvgNumber(double value);

/// Appends a straight-edged subpath; a line whose last point equals its first is closed.
void AppendPolyline(std::string& path, const std::vector<Point2>& points);

/// Appends a subpath that passes through all points. Where the line turns a little, as the chords of an arc do, it is
/// drawn as cubic curves with a common tangent; real corners and long straight pieces stay as they are.
void AppendCurve(std::string& path, const std::vector<Point2>& points);

}  // namespace zrfigure
