#pragma once

#include <dg/DVec2.h>
#include <du/Export.h>

namespace dg {

/// Point in the plane. The index 0 is x, any other y.
struct ZR_HOST_API DPoint2D {
  double x = 0, y = 0;

  constexpr DPoint2D() = default;
  constexpr DPoint2D(double xValue, double yValue) : x(xValue), y(yValue) {}

  double& operator[](int index) { return index == 0 ? x : y; }
  double operator[](int index) const { return index == 0 ? x : y; }
};

[[nodiscard]] inline DVec2 operator-(const DPoint2D& left, const DPoint2D& right) {
  return {left.x - right.x, left.y - right.y};
}

}  // namespace dg
