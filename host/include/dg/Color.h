#pragma once

#include <du/Export.h>

namespace dg {

/// Red, green, blue and opacity from 0 to 1; opaque black at first.
struct ZR_HOST_API Color {
  float r = 0, g = 0, b = 0, a = 1;

  Color() = default;
  Color(float red, float green, float blue, float alpha) : r(red), g(green), b(blue), a(alpha) {}
};

[[nodiscard]] inline bool operator==(const Color& left, const Color& right) {
  return left.r == right.r && left.g == right.g && left.b == right.b && left.a == right.a;
}
[[nodiscard]] inline bool operator!=(const Color& left, const Color& right) {
  return !(left == right);
}

}  // namespace dg
