#pragma once

#include <du/Export.h>

namespace dg {

/// Vector in space.
struct ZR_HOST_API DVec3 {
  double x = 0, y = 0, z = 0;

  constexpr DVec3() = default;
  constexpr DVec3(double xValue, double yValue, double zValue) : x(xValue), y(yValue), z(zValue) {}
  static const DVec3 ZERO;
};

}  // namespace dg
