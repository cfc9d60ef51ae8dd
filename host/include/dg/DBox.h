#pragma once

#include <dg/DPoint3D.h>
#include <du/Export.h>

namespace dg {

/// Box with edges along the axes; empty at first.
struct ZR_HOST_API DBox {
  DPoint3D min, max;

  DBox();
  DBox(const DPoint3D& minimum, const DPoint3D& maximum);

  /// True when a maximum is below its minimum.
  [[nodiscard]] bool IsEmpty() const;
  /// Extent along x and along y; 0 when empty.
  [[nodiscard]] double GetWidth() const;
  [[nodiscard]] double GetHeight() const;
  /// Grows the box just enough to contain the point.
  void Extend(const DPoint3D& point);
};

}  // namespace dg
