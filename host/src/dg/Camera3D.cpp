// A camera is composed of three row-vector transforms: model space to the camera's frame (right, down, forward, origin
// at `origin`), the frame to pixels around the middle of the window, and for the central projection a division by the
// distance in between. See Foley, van Dam, Feiner, Hughes, "Computer Graphics: Principles and Practice", chapter 6.

#include <dg/Camera3D.h>

#include <cmath>
#include <numbers>

namespace dg {

namespace {

double Dot(const DVec3& a, const DVec3& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

DVec3 Cross(const DVec3& a, const DVec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// False, and unchanged, for a vector without length.
bool Normalize(DVec3& vector) {
  const double length = std::sqrt(Dot(vector, vector));
  if (!(length > 0) || !std::isfinite(length)) return false;
  vector = {vector.x / length, vector.y / length, vector.z / length};
  return true;
}

DVec3 GetFarthestAxis(const DVec3& direction) {
  const double x = std::fabs(direction.x), y = std::fabs(direction.y), z = std::fabs(direction.z);
  if (z <= x && z <= y) return {0, 0, 1};
  return y <= x ? DVec3(0, 1, 0) : DVec3(1, 0, 0);
}

/// Unit vector to the right of somebody who looks along the unit vector `forward` with his head towards `up`.
DVec3 GetRight(const DVec3& forward, const DVec3& up) {
  constexpr double kParallel = 1e-9;
  DVec3 unitUp = up;
  DVec3 right = Normalize(unitUp) ? Cross(forward, unitUp) : DVec3();
  if (Dot(right, right) < kParallel * kParallel) right = Cross(forward, GetFarthestAxis(forward));
  Normalize(right);
  return right;
}

/// Model space to the frame at `origin` with the axes right, down and forward. False without a line of sight.
bool MakeFrame(const DPoint3D& origin, DVec3 forward, const DVec3& up, DMat44& frame) {
  if (!Normalize(forward)) return false;
  const DVec3 right = GetRight(forward, up);
  const DVec3 down = Cross(forward, right);
  const DVec3 axes[3] = {right, down, forward};
  const DVec3 offset = origin - DPoint3D::ORIGIN;
  frame = DMat44::IDENTITY;
  for (int column = 0; column < 3; ++column) {
    frame.m[0][column] = axes[column].x;
    frame.m[1][column] = axes[column].y;
    frame.m[2][column] = axes[column].z;
    frame.m[3][column] = -Dot(offset, axes[column]);
  }
  return true;
}

bool IsUsable(double extent, int pixelWidth, int pixelHeight) {
  return extent > 0 && std::isfinite(extent) && pixelWidth > 0 && pixelHeight > 0;
}

/// The frame to pixels, `scale` pixels for a unit, the frame's origin in the middle of the window.
DMat44 MakeWindow(double scale, int pixelWidth, int pixelHeight) {
  DMat44 window;
  for (int i = 0; i < 3; ++i) window.m[i][i] = scale;
  window.m[3][0] = pixelWidth / 2.0;
  window.m[3][1] = pixelHeight / 2.0;
  return window;
}

}  // namespace

DMat44 Camera3D::GetObjectToPixel() const {
  return objectToPixel_;
}

bool operator==(const Camera3D& left, const Camera3D& right) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      if (left.objectToPixel_.m[row][column] != right.objectToPixel_.m[row][column]) return false;
    }
  }
  return true;
}

bool operator!=(const Camera3D& left, const Camera3D& right) {
  return !(left == right);
}

void Camera3D::SetOrthographic(const DPoint3D& eye, const DPoint3D& target, const DVec3& up, double worldHeight,
                               int pixelWidth, int pixelHeight) {
  DMat44 frame;
  if (!IsUsable(worldHeight, pixelWidth, pixelHeight) || !MakeFrame(eye, target - eye, up, frame)) return;
  objectToPixel_ = frame * MakeWindow(pixelHeight / worldHeight, pixelWidth, pixelHeight);
}

void Camera3D::SetParallel(const DPoint3D& center, const DVec3& direction, const DVec3& up, double pixelsPerUnit,
                           int pixelWidth, int pixelHeight) {
  DMat44 frame;
  if (!IsUsable(pixelsPerUnit, pixelWidth, pixelHeight) || !MakeFrame(center, direction, up, frame)) return;
  objectToPixel_ = frame * MakeWindow(pixelsPerUnit, pixelWidth, pixelHeight);
}

void Camera3D::SetPerspective(const DPoint3D& eye, const DPoint3D& target, const DVec3& up, double fieldOfView,
                              int pixelWidth, int pixelHeight) {
  DMat44 frame;
  if (!IsUsable(fieldOfView, pixelWidth, pixelHeight) || fieldOfView >= std::numbers::pi ||
      !MakeFrame(eye, target - eye, up, frame)) {
    return;
  }
  const DVec3 sight = target - eye;
  const double distance = std::sqrt(Dot(sight, sight));
  // w becomes the distance along the line of sight, so that x and y are divided by it; depth becomes 1 - distance / w.
  const double scale = pixelHeight / (2 * std::tan(fieldOfView / 2));
  DMat44 projection;
  projection.m[0][0] = scale;
  projection.m[1][1] = scale;
  projection.m[2][0] = pixelWidth / 2.0;
  projection.m[2][1] = pixelHeight / 2.0;
  projection.m[2][2] = 1;
  projection.m[2][3] = 1;
  projection.m[3][2] = -distance;
  projection.m[3][3] = 0;
  objectToPixel_ = frame * projection;
}

void Camera3D::SetObjectToPixel(const DMat44& matrix) {
  objectToPixel_ = matrix;
}

}  // namespace dg
