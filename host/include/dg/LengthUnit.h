#pragma once

#include <du/Export.h>

namespace dg {

/// Units of length on a page.
struct ZR_HOST_API LengthUnit {
  enum Unit { MILLIMETER, CENTIMETER, METER, INCH, POINT };

  /// Converts a value of the given dimension: 1 for lengths, 2 for areas.
  [[nodiscard]] static double Convert(Unit from, Unit to, double value, int dimension);
};

}  // namespace dg
