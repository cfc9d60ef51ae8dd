#pragma once
// Arithmetic on the model's 3D points and on page points, and the axis-aligned boxes round them.

#include <algorithm>
#include <cmath>
#include <limits>

#include "Model.h"

namespace zrfigure {

inline Vec3 operator+(Vec3 a, Vec3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(Vec3 a, double s) {
  return {a.x * s, a.y * s, a.z * s};
}
inline double Dot(Vec3 a, Vec3 b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 Cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(Vec3 a) {
  return std::sqrt(Dot(a, a));
}
/// The zero vector stays the zero vector.
inline Vec3 Normalized(Vec3 a) {
  const double length = Length(a);
  return length > 0 ? a * (1 / length) : a;
}

inline Vec3 ToVec3(const std::array<float, 3>& p) {
  return {p[0], p[1], p[2]};
}

inline Vec3 TransformVector(const Placement& placement, Vec3 v) {
  const auto& m = placement.linear;
  return {v.x * m[0][0] + v.y * m[1][0] + v.z * m[2][0], v.x * m[0][1] + v.y * m[1][1] + v.z * m[2][1],
          v.x * m[0][2] + v.y * m[1][2] + v.z * m[2][2]};
}
inline Vec3 TransformPoint(const Placement& placement, Vec3 p) {
  return TransformVector(placement, p) + placement.translation;
}

/// A point of the page or of an image: x right, y down, in pixels unless said otherwise.
struct Point2 {
  double x = 0, y = 0;
};
inline Point2 operator+(Point2 a, Point2 b) {
  return {a.x + b.x, a.y + b.y};
}
inline Point2 operator-(Point2 a, Point2 b) {
  return {a.x - b.x, a.y - b.y};
}
inline Point2 operator*(Point2 a, double s) {
  return {a.x * s, a.y * s};
}
inline double Distance(Point2 a, Point2 b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

/// Axis-aligned box of page points; empty (min above max) until a point is added.
struct Box2 {
  double minX = std::numeric_limits<double>::infinity(), minY = minX;
  double maxX = -minX, maxY = -minX;

  [[nodiscard]] bool Empty() const { return minX > maxX || minY > maxY; }
  [[nodiscard]] double Width() const { return Empty() ? 0 : maxX - minX; }
  [[nodiscard]] double Height() const { return Empty() ? 0 : maxY - minY; }
  [[nodiscard]] Point2 Centre() const { return {(minX + maxX) / 2, (minY + maxY) / 2}; }
  void Add(Point2 p) {
    minX = std::min(minX, p.x), maxX = std::max(maxX, p.x);
    minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
  }
};

/// Axis-aligned box of world points; empty until a point is added.
struct Box3 {
  Vec3 min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
           std::numeric_limits<double>::infinity()};
  Vec3 max = min * -1;

  [[nodiscard]] bool Empty() const { return min.x > max.x; }
  [[nodiscard]] double Diagonal() const { return Empty() ? 0 : Length(max - min); }
  void Add(Vec3 p) {
    min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
  }
};

/// Indices of the occurrences that carry triangles, ascending.
inline std::vector<int> LeafOccurrences(const Model& model) {
  std::vector<int> leaves;
  for (std::size_t i = 0; i < model.occurrences.size(); ++i) {
    const int product = model.occurrences[i].product;
    if (product >= 0 && !model.products[product].mesh.triangles.empty()) leaves.push_back(static_cast<int>(i));
  }
  return leaves;
}

}  // namespace zrfigure
