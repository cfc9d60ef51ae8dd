#pragma once
// A part's shape as a mesh. Uses CAD library types; included by sources of this folder only.

#include <TopoDS_Shape.hxx>

#include "Model.h"

namespace zrfigure {

/// Meshes `shape` so that no triangle is further than `deflection` (millimetres) from its surface. Normals come from
/// the surfaces. Shapes that carry triangles without surfaces, as mesh files do, are taken as they are. The
/// triangulation that the shape holds afterwards is dropped. Empty when the shape has no faces or none could be meshed.
[[nodiscard]] Mesh TessellatePart(const TopoDS_Shape& shape, double deflection);

}  // namespace zrfigure
