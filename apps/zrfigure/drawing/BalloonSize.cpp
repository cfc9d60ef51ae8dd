#include "drawing/BalloonSize.h"

namespace zrfigure {
namespace {

constexpr double kDiameter = 2.9;  // Of the common circle, in cap heights: two digits and the air round them.
constexpr double kPadding = 0.55;  // Between text and border, in cap heights.

}  // namespace

BalloonSize SizeBalloon(const std::vector<std::string>& lines, const TextMeasure& text) {
  const double cap = text.CapHeight();
  const double diameter = kDiameter * cap;
  double width = 0;
  for (const std::string& line : lines) width = std::max(width, text.Width(line));
  if (lines.size() <= 1) {
    const bool fits = std::hypot(width, cap) + kPadding * cap <= diameter;
    if (fits) return {BalloonShape::Circle, diameter, diameter};
    // The round ends take a quarter of the height each that text may reach into.
    return {BalloonShape::Stadium, std::max(diameter, width + diameter / 2 + kPadding * cap), diameter};
  }
  const double height = static_cast<double>(lines.size() - 1) * text.LineHeight() + diameter;
  return {BalloonShape::Stadium, std::max(diameter, width + diameter / 2 + kPadding * cap), height};
}

Point2 BorderPoint(BalloonShape shape, const Box2& box, Point2 from) {
  const Point2 centre = box.Centre();
  const double distance = Distance(from, centre);
  if (distance == 0) return centre;
  const Point2 toward = (from - centre) * (1 / distance);
  const double halfWidth = box.Width() / 2, halfHeight = box.Height() / 2;
  if (shape == BalloonShape::Circle) return centre + toward * std::min(halfWidth, halfHeight);
  // A rounded box is the set of points at most r away from an inner box: march the ray out of it by bisection.
  const double radius = shape == BalloonShape::Stadium ? CornerRadius(box) : 0;
  const double innerX = halfWidth - radius, innerY = halfHeight - radius;
  double low = 0, high = halfWidth + halfHeight;
  for (int i = 0; i < 40; ++i) {
    const double middle = (low + high) / 2;
    const double dx = std::max(0.0, std::abs(toward.x * middle) - innerX);
    const double dy = std::max(0.0, std::abs(toward.y * middle) - innerY);
    (std::hypot(dx, dy) <= radius ? low : high) = middle;
  }
  return centre + toward * low;
}

double CornerRadius(const Box2& box) {
  const double limit = kDiameter * kLetteringHeightMm * kPxPerMm / 2;
  return std::min({limit, box.Width() / 2, box.Height() / 2});
}

}  // namespace zrfigure
