#pragma once

#include <dg/DMat44.h>
#include <dg/DPoint3D.h>
#include <dg/DVec3.h>
#include <du/Export.h>

namespace dg {

/// Camera of a 3D view, kept as the matrix that takes model space to pixels: x to the right and y downwards from the
/// upper left corner of the window, z away from the viewer. The identity at first.
///
/// Every set-up leaves the camera unchanged when it is degenerate: no line of sight, no pixels, or no extent. An `up`
/// along the line of sight (or zero) is replaced by the axis that is farthest from it.
class ZR_HOST_API Camera3D {
public:
  [[nodiscard]] DMat44 GetObjectToPixel() const;
  friend ZR_HOST_API bool operator==(const Camera3D& left, const Camera3D& right);
  friend ZR_HOST_API bool operator!=(const Camera3D& left, const Camera3D& right);

  /// Parallel projection from `eye` towards `target`, which comes to the middle of the window; the window shows
  /// `worldHeight` model units from bottom to top. Depth is the distance from the eye, in pixels as x and y are.
  void SetOrthographic(const DPoint3D& eye, const DPoint3D& target, const DVec3& up, double worldHeight, int pixelWidth,
                       int pixelHeight);
  /// Parallel projection along `direction` with `center` in the middle of the window at depth 0.
  void SetParallel(const DPoint3D& center, const DVec3& direction, const DVec3& up, double pixelsPerUnit,
                   int pixelWidth, int pixelHeight);
  /// Central projection from `eye` towards `target`; `fieldOfView` is the vertical opening angle in radians, below pi.
  /// Depth grows from minus infinity at the eye to 1 at infinity and is 0 at the target.
  void SetPerspective(const DPoint3D& eye, const DPoint3D& target, const DVec3& up, double fieldOfView, int pixelWidth,
                      int pixelHeight);
  void SetObjectToPixel(const DMat44& matrix);

private:
  DMat44 objectToPixel_;
};

}  // namespace dg
