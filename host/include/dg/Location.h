#pragma once

#include <dg/DMat44.h>
#include <dg/DPoint3D.h>
#include <dg/FMat33.h>
#include <du/Export.h>

namespace dg {

/// Placement: a linear part followed by a position. The identity at first.
class ZR_HOST_API Location {
public:
  constexpr Location() = default;
  Location(const FMat33& mat, const DPoint3D& pos);
  static const Location IDENTITY;

  void SetPos(const DPoint3D& pos);
  [[nodiscard]] DPoint3D GetPos() const;
  void SetMat(const FMat33& mat);
  [[nodiscard]] FMat33 GetMat() const;
  /// The uniform scale of the linear part: the length of its first row.
  [[nodiscard]] double GetScale() const;
  /// The linear part in the upper 3x3, the position in the last row.
  [[nodiscard]] DMat44 GetXform() const;

private:
  FMat33 mat_;
  DPoint3D pos_;
};

}  // namespace dg
