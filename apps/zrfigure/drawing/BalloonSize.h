#pragma once
// How large a balloon must be for its text.

#include "drawing/Figure.h"
#include "drawing/TextMeasure.h"

namespace zrfigure {

struct BalloonSize {
  BalloonShape shape = BalloonShape::Circle;
  double width = 0;  ///< Pixels, border included.
  double height = 0;
};

/// Short one-line text gets the circle that all balloons share; longer text a stadium as high as that circle; several
/// lines a rounded box. Text without a character gets the circle.
[[nodiscard]] BalloonSize SizeBalloon(const std::vector<std::string>& lines, const TextMeasure& text);

/// Radius of the corners of a stadium-shaped balloon.
[[nodiscard]] double CornerRadius(const Box2& box);

/// Where a leader that comes from `from` meets the balloon's border, aimed at its centre.
[[nodiscard]] Point2 BorderPoint(BalloonShape shape, const Box2& box, Point2 from);

}  // namespace zrfigure
