#pragma once

#include <set>

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk {
class ShapeInstance;
class ShapeScene;
namespace illustration {
class SbomInstance;
}
}  // namespace zrk

namespace zrannotations {

/// Whether the part's own shape in the scene is visible, or that of anything below it; false without a scene or an
/// instance. Ends at the first visible shape.
[[nodiscard]] ZR_HOST_API bool IsPartOrAssemblyVisible(const du::SmartPtr<zrk::ShapeScene>& scene,
                                                       const du::SmartPtr<zrk::illustration::SbomInstance>& instance);

/// Inserts the shapes that the assembly and everything below it have in the scene. Linear in the size of the assembly.
ZR_HOST_API void GetShapeInstancesForAssembly(const du::SmartPtr<zrk::ShapeScene>& scene,
                                              const du::SmartPtr<zrk::illustration::SbomInstance>& assembly,
                                              std::set<du::SmartPtr<zrk::ShapeInstance>>& shapeInstances);

}  // namespace zrannotations
