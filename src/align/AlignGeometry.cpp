#include "align/AlignGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zrcallouts::alignment {

namespace {

constexpr double kTolerance = 0.005;
constexpr double kRightAngle = 1.57079632679489661923;

}  // namespace

bool IsAxisMode(Align_Mode mode) {
  return mode == AlongAxisX || mode == AlongAxisY || mode == AlongAxisZ;
}

bool IsSpreadMode(Align_Mode mode) {
  return mode == SpreadX || mode == SpreadY;
}

std::size_t AxisIndex(Align_Mode mode) {
  return static_cast<std::size_t>(mode - AlongAxisX);
}

bool HasDirection(const dg::DVec2& direction) {
  return !(std::abs(direction.x) < kNoDirection && std::abs(direction.y) < kNoDirection);
}

void StartRange(std::array<double, 4>& range, double primary, double other) {
  range = {primary, primary, other, other};
}

void ExtendRange(std::array<double, 4>& range, double primary, double other) {
  if (primary < range[0]) range[0] = primary;
  if (primary > range[1]) range[1] = primary;
  if (other < range[2]) range[2] = other;
  if (other > range[3]) range[3] = other;
}

bool IsSlanted(const dg::DVec2& direction, Align_Mode& mode, std::array<double, 4>& range, int& primary) {
  const double angle = std::abs(std::atan(direction.y / direction.x));
  if (std::abs(kRightAngle - angle) <= kTolerance * std::max({kRightAngle, angle, 1.0})) {
    mode = CenterX;
    return false;
  }
  if (angle > kTolerance * std::max(angle, 1.0)) return true;
  mode = CenterY;
  std::swap(range[0], range[2]);
  std::swap(range[1], range[3]);
  primary = 1;
  return false;
}

double AlignedCoordinate(Align_Mode mode, const std::array<double, 4>& range, double current) {
  switch (mode) {
    case MinX:
    case MinY:
      return range[0];
    case MaxX:
    case MaxY:
      return range[1];
    case CenterX:
    case CenterY:
      return (range[0] + range[1]) / 2;
    case SpreadX:
    case SpreadY:
    case AlongAxisX:
    case AlongAxisY:
    case AlongAxisZ:
    case AlongLine:
      break;
  }
  return current;
}

dg::DPoint2D OntoLine(const dg::DPoint2D& point, const dg::DPoint2D& centre, const dg::DVec2& direction) {
  const double length = direction.Length();
  if (!(length > 0)) return point;
  const dg::DVec2 unit(direction.x / length, direction.y / length);
  const double t = (point.x - centre.x) * unit.x + (point.y - centre.y) * unit.y;
  return {centre.x + t * unit.x, centre.y + t * unit.y};
}

dg::DPoint2D OntoSegment(const dg::DPoint2D& point, const std::array<dg::DPoint2D, 2>& segment) {
  const auto& [start, end] = segment;
  const dg::DVec2 along = end - start;
  const double square = along.x * along.x + along.y * along.y;
  const double t = ((point.x - start.x) * along.x + (point.y - start.y) * along.y) / (square == 0 ? 1.0 : square);
  if (t <= 0) return start;
  if (t >= 1) return end;
  return {start.x + t * along.x, start.y + t * along.y};
}

dg::DPoint2D EvenPlace(std::size_t index, std::size_t count, const dg::DPoint2D& position, const dg::DPoint2D& start,
                       const dg::DPoint2D& end) {
  const dg::DVec2 along = end - start;
  const double length = along.Length();
  if (!(length > 0)) return position;
  const double s = static_cast<double>(index) * length / static_cast<double>(count - 1);
  return {start.x + s * (along.x / length), start.y + s * (along.y / length)};
}

double EvenCoordinate(std::size_t index, std::size_t count, const std::array<double, 4>& range) {
  return range[2] + (range[3] - range[2]) * static_cast<double>(index) / static_cast<double>(count - 1);
}

bool ComesBefore(const dg::DPoint2D& left, const dg::DPoint2D& right) {
  return left.x != right.x ? left.x < right.x : left.y < right.y;
}

}  // namespace zrcallouts::alignment
