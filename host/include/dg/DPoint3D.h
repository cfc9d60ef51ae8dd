#pragma once

#include <dg/DVec3.h>
#include <du/Export.h>

namespace dg {

/// Point in space. The index 0 is x, 1 is y, any other z.
struct ZR_HOST_API DPoint3D {
  double x = 0, y = 0, z = 0;

  constexpr DPoint3D() = default;
  constexpr DPoint3D(double xValue, double yValue, double zValue) : x(xValue), y(yValue), z(zValue) {}
  /// The point that the vector reaches from the origin.
  constexpr DPoint3D(const DVec3& vector) : x(vector.x), y(vector.y), z(vector.z) {}
  static const DPoint3D ORIGIN;

  double& operator[](int index) { return index == 0 ? x : index == 1 ? y : z; }
  double operator[](int index) const { return index == 0 ? x : index == 1 ? y : z; }
};

[[nodiscard]] inline DVec3 operator-(const DPoint3D& left, const DPoint3D& right) {
  return {left.x - right.x, left.y - right.y, left.z - right.z};
}

}  // namespace dg
