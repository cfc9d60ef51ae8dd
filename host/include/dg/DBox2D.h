#pragma once

#include <limits>

#include <dg/DPoint2D.h>
#include <du/Export.h>

namespace dg {

/// Rectangle with sides along the axes; empty at first.
struct ZR_HOST_API DBox2D {
  DPoint2D min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  DPoint2D max{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

  constexpr DBox2D() = default;
  DBox2D(const DPoint2D& minimum, const DPoint2D& maximum);
  static const DBox2D EMPTY;

  /// True when a maximum is below its minimum.
  [[nodiscard]] bool IsEmpty() const;
  /// True within the rectangle, its border included, grown by `tolerance` on every side. An empty one contains nothing.
  [[nodiscard]] bool Contains(const DPoint2D& point, double tolerance) const;
  /// 0 when empty.
  [[nodiscard]] double GetWidth() const;
  [[nodiscard]] double GetHeight() const;
};

}  // namespace dg
