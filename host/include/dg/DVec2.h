#pragma once

#include <du/Export.h>

namespace dg {

/// Vector in the plane.
struct ZR_HOST_API DVec2 {
  double x = 0, y = 0;

  constexpr DVec2() = default;
  constexpr DVec2(double xValue, double yValue) : x(xValue), y(yValue) {}
  static const DVec2 ZERO;

  [[nodiscard]] double Length() const;
};

}  // namespace dg
