#pragma once

#include <set>

#include <dg/DBox.h>
#include <dg/DPoint3D.h>
#include <dg/Location.h>
#include <du/SmartPtr.h>
#include <zrk/ShapeInstance.h>

namespace zrannotations {

using ShapeSet = std::set<du::SmartPtr<zrk::ShapeInstance>>;

/// Box in model space around the shape's box; empty when that is empty.
[[nodiscard]] dg::DBox GetModelBox(const zrk::ShapeInstance& shape);
/// Centre of the shape's box in model space; the shape's position when the box is empty.
[[nodiscard]] dg::DPoint3D GetModelCenter(const zrk::ShapeInstance& shape);
/// Box in model space around all shapes.
[[nodiscard]] dg::DBox GetModelBox(const ShapeSet& shapes);
/// The middle of all shapes as a location without rotation and with scale 1; IDENTITY without shapes.
[[nodiscard]] dg::Location GetRoughLocation(const ShapeSet& shapes);
/// The centre, among those of the shapes, that is nearest to the middle of all; false without shapes.
[[nodiscard]] bool GetAssemblyAnchor(const ShapeSet& shapes, dg::DPoint3D& point);
[[nodiscard]] dg::DPoint3D GetCenter(const dg::DBox& box);
/// Position and scale of the location, without its rotation.
[[nodiscard]] dg::Location WithoutRotation(const dg::Location& location);
/// Takes a point of model space into the frame; a frame without extent only subtracts its position.
[[nodiscard]] dg::DPoint3D IntoFrame(const dg::DPoint3D& point, const dg::Location& frame);
[[nodiscard]] bool IsSame(const dg::Location& left, const dg::Location& right);
[[nodiscard]] bool IsSame(const dg::DPoint3D& left, const dg::DPoint3D& right);

}  // namespace zrannotations
