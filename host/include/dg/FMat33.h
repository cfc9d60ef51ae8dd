#pragma once

#include <du/Export.h>

namespace dg {

/// Linear part of a placement, in row-vector convention. The identity at first.
struct ZR_HOST_API FMat33 {
  double m[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

  constexpr FMat33() = default;
  static const FMat33 IDENTITY;
  /// Uniform scaling.
  [[nodiscard]] static FMat33 Scale(double factor);
};

}  // namespace dg
