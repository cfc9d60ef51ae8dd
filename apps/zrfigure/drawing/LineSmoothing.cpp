#include "drawing/LineSmoothing.h"

namespace zrfigure {
namespace {

constexpr double kSpacing = 2;    // Pixels between the points that are moved.
constexpr double kShortest = 12;  // Pixels; shorter lines have nothing to smooth.
constexpr int kRounds = 12;
constexpr double kShrink = 0.5, kInflate = -0.53;  // One step of each leaves low frequencies as they are.

std::vector<Point2> Resampled(const std::vector<Point2>& points, double length) {
  const int count = static_cast<int>(std::ceil(length / kSpacing));
  std::vector<Point2> even{points.front()};
  std::size_t segment = 1;
  double passed = 0;
  for (int i = 1; i < count; ++i) {
    const double wanted = length * i / count;
    double step = Distance(points[segment - 1], points[segment]);
    while (passed + step < wanted && segment + 1 < points.size()) {
      passed += step;
      ++segment;
      step = Distance(points[segment - 1], points[segment]);
    }
    const double t = step > 0 ? (wanted - passed) / step : 0;
    even.push_back(points[segment - 1] + (points[segment] - points[segment - 1]) * t);
  }
  even.push_back(points.back());
  return even;
}

void MoveTowardNeighbours(std::vector<Point2>& points, double share, bool closed) {
  const std::vector<Point2> old = points;
  const std::size_t last = old.size() - 1;
  const auto moved = [&](std::size_t before, std::size_t at, std::size_t after) {
    return old[at] + ((old[before] + old[after]) * 0.5 - old[at]) * share;
  };
  for (std::size_t i = 1; i < last; ++i) points[i] = moved(i - 1, i, i + 1);
  if (closed) points.front() = points.back() = moved(last - 1, 0, 1);
}

}  // namespace

double PolylineLength(const std::vector<Point2>& points) {
  double length = 0;
  for (std::size_t i = 1; i < points.size(); ++i) length += Distance(points[i - 1], points[i]);
  return length;
}

double DistanceToSegment(Point2 p, Point2 a, Point2 b) {
  const Point2 ab = b - a, ap = p - a;
  const double squared = ab.x * ab.x + ab.y * ab.y;
  const double t = squared > 0 ? std::clamp((ap.x * ab.x + ap.y * ab.y) / squared, 0.0, 1.0) : 0;
  return Distance(p, a + ab * t);
}

// An explicit stack, because a thread's helix has more points than the call stack has room for.
std::vector<Point2> Simplified(const std::vector<Point2>& points, double tolerance) {
  std::vector<bool> keep(points.size());
  keep.front() = keep.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> open{{0, points.size() - 1}};
  while (!open.empty()) {
    const auto [first, last] = open.back();
    open.pop_back();
    double worst = tolerance;
    std::size_t at = first;
    for (std::size_t i = first + 1; i < last; ++i) {
      const double distance = DistanceToSegment(points[i], points[first], points[last]);
      if (distance > worst) worst = distance, at = i;
    }
    if (at == first) continue;
    keep[at] = true;
    open.emplace_back(first, at);
    open.emplace_back(at, last);
  }
  std::vector<Point2> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (keep[i]) kept.push_back(points[i]);
  }
  return kept;
}

std::vector<Point2> Smoothed(const std::vector<Point2>& points) {
  const double length = PolylineLength(points);
  if (length < kShortest) return points;
  const bool closed = Distance(points.front(), points.back()) == 0;
  std::vector<Point2> smooth = Resampled(points, length);
  for (int round = 0; round < kRounds; ++round) {
    MoveTowardNeighbours(smooth, kShrink, closed);
    MoveTowardNeighbours(smooth, kInflate, closed);
  }
  return smooth;
}

}  // namespace zrfigure
