#include "ShapeGeometry.h"

#include <algorithm>
#include <tuple>

namespace zrannotations {

namespace {

double SquaredDistance(const dg::DPoint3D& left, const dg::DPoint3D& right) {
  const dg::DVec3 difference = left - right;
  return difference.x * difference.x + difference.y * difference.y + difference.z * difference.z;
}

}  // namespace

dg::DPoint3D GetCenter(const dg::DBox& box) {
  return {(box.min.x + box.max.x) / 2, (box.min.y + box.max.y) / 2, (box.min.z + box.max.z) / 2};
}

dg::DBox GetModelBox(const zrk::ShapeInstance& shape) {
  const dg::DBox local = shape.GetBoundingBox();
  dg::DBox result;
  if (local.IsEmpty()) return result;
  const dg::DMat44 transform = shape.GetLocation().GetXform();
  for (int corner = 0; corner < 8; ++corner) {
    result.Extend(dg::DPoint3D((corner & 1) != 0 ? local.max.x : local.min.x,
                               (corner & 2) != 0 ? local.max.y : local.min.y,
                               (corner & 4) != 0 ? local.max.z : local.min.z) *
                  transform);
  }
  return result;
}

dg::DPoint3D GetModelCenter(const zrk::ShapeInstance& shape) {
  const dg::DBox local = shape.GetBoundingBox();
  const dg::Location location = shape.GetLocation();
  return local.IsEmpty() ? location.GetPos() : GetCenter(local) * location.GetXform();
}

dg::DBox GetModelBox(const ShapeSet& shapes) {
  dg::DBox result;
  for (const du::SmartPtr<zrk::ShapeInstance>& shape : shapes) {
    const dg::DBox box = GetModelBox(*shape);
    if (box.IsEmpty()) {
      result.Extend(GetModelCenter(*shape));
      continue;
    }
    result.Extend(box.min);
    result.Extend(box.max);
  }
  return result;
}

dg::Location GetRoughLocation(const ShapeSet& shapes) {
  dg::Location location = dg::Location::IDENTITY;
  if (!shapes.empty()) location.SetPos(GetCenter(GetModelBox(shapes)));
  return location;
}

bool GetAssemblyAnchor(const ShapeSet& shapes, dg::DPoint3D& point) {
  if (shapes.empty()) return false;
  const dg::DPoint3D middle = GetCenter(GetModelBox(shapes));
  // Shapes are ordered by address, which differs from run to run: equal distances are decided by coordinates.
  using Candidate = std::tuple<double, double, double, double>;
  bool found = false;
  Candidate best;
  for (const du::SmartPtr<zrk::ShapeInstance>& shape : shapes) {
    const dg::DPoint3D center = GetModelCenter(*shape);
    const Candidate candidate(SquaredDistance(center, middle), center.x, center.y, center.z);
    if (!found || candidate < best) best = candidate;
    found = true;
  }
  point = dg::DPoint3D(std::get<1>(best), std::get<2>(best), std::get<3>(best));
  return true;
}

dg::Location WithoutRotation(const dg::Location& location) {
  dg::Location frame = dg::Location::IDENTITY;
  frame.SetPos(location.GetPos());
  frame.SetMat(dg::FMat33::Scale(location.GetScale()));
  return frame;
}

dg::DPoint3D IntoFrame(const dg::DPoint3D& point, const dg::Location& frame) {
  dg::DMat44 inverse = frame.GetXform();
  if (inverse.Invert()) return point * inverse;
  return dg::DPoint3D(point - frame.GetPos());
}

bool IsSame(const dg::Location& left, const dg::Location& right) {
  const dg::DMat44 first = left.GetXform();
  const dg::DMat44 second = right.GetXform();
  return std::equal(&first.m[0][0], &first.m[0][0] + 16, &second.m[0][0]);
}

bool IsSame(const dg::DPoint3D& left, const dg::DPoint3D& right) {
  return left.x == right.x && left.y == right.y && left.z == right.z;
}

}  // namespace zrannotations
