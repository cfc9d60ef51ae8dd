#pragma once
// The few vector operations that meshing needs.

#include <array>
#include <cmath>

#include "Model.h"

namespace zrfigure {

[[nodiscard]] inline Vec3 operator+(const Vec3& a, const Vec3& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
[[nodiscard]] inline Vec3 operator-(const Vec3& a, const Vec3& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
[[nodiscard]] inline Vec3 operator*(const Vec3& v, double factor) {
  return {v.x * factor, v.y * factor, v.z * factor};
}

[[nodiscard]] inline double Dot(const Vec3& a, const Vec3& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

[[nodiscard]] inline Vec3 Cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

[[nodiscard]] inline double Length(const Vec3& v) {
  return std::sqrt(Dot(v, v));
}

/// `v` at length 1, or `fallback` when it has no direction.
[[nodiscard]] inline Vec3 NormalizedOr(const Vec3& v, const Vec3& fallback) {
  const double length = Length(v);
  return length > 1e-30 && std::isfinite(length) ? v * (1 / length) : fallback;
}

/// `v` at length 1, or the zero vector when it has no direction.
[[nodiscard]] inline Vec3 Normalized(const Vec3& v) {
  return NormalizedOr(v, {0, 0, 0});
}

[[nodiscard]] inline std::array<float, 3> ToFloats(const Vec3& v) {
  return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

}  // namespace zrfigure
