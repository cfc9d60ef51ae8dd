#pragma once
// Boxes of whole meshes, from which a walk over an assembly sees that a part adds nothing to a box round all parts:
// most stand inside it, and their vertices need not be transformed.

#include "visibility/VectorMath.h"

namespace zrfigure {

/// Box of the mesh's vertices in the part's own space.
[[nodiscard]] inline Box3 BoxOf(const Mesh& mesh) {
  Box3 box;
  for (const auto& position : mesh.positions) box.Add(ToVec3(position));
  return box;
}

[[nodiscard]] inline std::array<Vec3, 8> Corners(const Box3& box) {
  std::array<Vec3, 8> corners;
  for (unsigned i = 0; i < corners.size(); ++i) {
    corners[i] = {i & 1 ? box.max.x : box.min.x, i & 2 ? box.max.y : box.min.y, i & 4 ? box.max.z : box.min.z};
  }
  return corners;
}

/// Whether the point lies in the box by more than rounding could move a point of the part whose corner it is.
[[nodiscard]] inline bool LiesWellInside(Point2 p, const Box2& box) {
  const double slack = (box.Width() + box.Height()) * 1e-6;
  return p.x > box.minX + slack && p.x < box.maxX - slack && p.y > box.minY + slack && p.y < box.maxY - slack;
}

/// The same for world points.
[[nodiscard]] inline bool LiesWellInside(Vec3 p, const Box3& box) {
  const double slack = box.Diagonal() * 1e-6;
  return p.x > box.min.x + slack && p.x < box.max.x - slack && p.y > box.min.y + slack && p.y < box.max.y - slack &&
         p.z > box.min.z + slack && p.z < box.max.z - slack;
}

}  // namespace zrfigure
