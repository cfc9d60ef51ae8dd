#pragma once

#include <dg/DPoint3D.h>
#include <dg/DVec3.h>
#include <du/Export.h>

namespace dg {

/// Transform in row-vector convention: `point * matrix`, the translation in the last row. The identity at first.
struct ZR_HOST_API DMat44 {
  double m[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

  constexpr DMat44() = default;
  static const DMat44 IDENTITY;

  /// Inverts in place by Gauss-Jordan elimination with partial pivoting. False, and unchanged, when singular.
  bool Invert();
};

/// Transforms and divides by w. A point that has no image (w is 0) keeps its undivided coordinates.
[[nodiscard]] ZR_HOST_API DPoint3D operator*(const DPoint3D& point, const DMat44& matrix);
/// Transforms as a vector: without translation and without division.
[[nodiscard]] ZR_HOST_API DVec3 operator*(const DVec3& vector, const DMat44& matrix);
/// The transform that applies `left` first.
[[nodiscard]] ZR_HOST_API DMat44 operator*(const DMat44& left, const DMat44& right);

}  // namespace dg
