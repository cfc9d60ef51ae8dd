#include "drawing/SvgPath.h"

#include <array>
#include <charconv>

namespace zrfigure {
namespace {

constexpr double kCornerTurn = 0.55;    // Radians; a sharper turn is a corner.
constexpr double kMostBulge = 1.5;      // Pixels a curve may leave its chord by: chords of arcs never stand off more.
constexpr double kMostLengthRatio = 4;  // Beside a much longer piece the curve takes over that piece's direction.
constexpr double kFlat = 0.01;          // Radians between tangent and chord that still draw as a straight line.

std::string PointText(Point2 p) {
  return SvgNumber(p.x) + ' ' + SvgNumber(p.y);
}

bool IsClosed(const std::vector<Point2>& points) {
  return points.size() > 2 && points.front().x == points.back().x && points.front().y == points.back().y;
}

Point2 Unit(Point2 v) {
  const double length = std::hypot(v.x, v.y);
  return length > 0 ? v * (1 / length) : v;
}

double TurnBetween(Point2 a, Point2 b) {
  return std::abs(std::atan2(a.x * b.y - a.y * b.x, a.x * b.x + a.y * b.y));
}

/// Unit directions in which the curve arrives at a point and leaves it.
struct Tangents {
  Point2 in, out;
};

Tangents TangentsAt(Point2 before, Point2 at, Point2 after) {
  const Point2 in = Unit(at - before), out = Unit(after - at);
  const double inLength = Distance(before, at), outLength = Distance(at, after);
  const double turn = TurnBetween(in, out);
  const double bulge = std::min(inLength, outLength) * turn / 8;
  if (turn > kCornerTurn || bulge > kMostBulge) return {in, out};
  if (inLength > kMostLengthRatio * outLength) return {in, in};
  if (outLength > kMostLengthRatio * inLength) return {out, out};
  // The tangent of the parabola through the three points.
  const Point2 tangent = Unit(in * outLength + out * inLength);
  return {tangent, tangent};
}

std::vector<Tangents> AllTangents(const std::vector<Point2>& points) {
  const std::size_t last = points.size() - 1;
  std::vector<Tangents> tangents(points.size());
  tangents.front().out = Unit(points[1] - points[0]);
  tangents.back().in = Unit(points[last] - points[last - 1]);
  for (std::size_t i = 1; i < last; ++i) tangents[i] = TangentsAt(points[i - 1], points[i], points[i + 1]);
  if (IsClosed(points)) tangents.front() = tangents.back() = TangentsAt(points[last - 1], points[0], points[1]);
  return tangents;
}

}  // namespace

std::string SvgNumber(double value) {
  const double rounded = std::round(value * 100) / 100;
  std::array<char, 400> text{};  // The longest double in fixed notation has 309 digits before the point.
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), rounded == 0 ? 0.0 : rounded, std::chars_format::fixed, 2);
  return {text.data(), end.ptr};
}

void AppendPolyline(std::string& path, const std::vector<Point2>& points) {
  const bool closed = IsClosed(points);
  const std::size_t count = closed ? points.size() - 1 : points.size();
  for (std::size_t i = 0; i < count; ++i) path += (i == 0 ? 'M' : 'L') + PointText(points[i]);
  if (closed) path += 'Z';
}

void AppendCurve(std::string& path, const std::vector<Point2>& points) {
  if (points.size() < 3) return AppendPolyline(path, points);
  const std::vector<Tangents> tangents = AllTangents(points);
  path += 'M' + PointText(points[0]);
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Point2 from = points[i - 1], to = points[i], chord = Unit(to - from);
    const Point2 leave = tangents[i - 1].out, arrive = tangents[i].in;
    if (TurnBetween(leave, chord) < kFlat && TurnBetween(chord, arrive) < kFlat) {
      path += 'L' + PointText(to);
      continue;
    }
    const double handle = Distance(from, to) / 3;
    path += 'C' + PointText(from + leave * handle) + ' ' + PointText(to - arrive * handle) + ' ' + PointText(to);
  }
  if (IsClosed(points)) path += 'Z';
}

}  // namespace zrfigure
