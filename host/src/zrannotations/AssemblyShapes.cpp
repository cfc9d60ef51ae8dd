#include <zrannotations/AssemblyShapes.h>

#include <vector>

#include <zrk/Instance.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/SbomInstance.h>

namespace zrannotations {

namespace {

using SbomInstancePtr = du::SmartPtr<zrk::illustration::SbomInstance>;

// Visits the shapes of the instance and of everything below it until `visit` answers false. A list of its own instead
// of recursion: structures may be deep.
template <class Visit>
void VisitShapes(const du::SmartPtr<zrk::ShapeScene>& scene, const SbomInstancePtr& top, const Visit& visit) {
  if (!scene || !top) return;
  std::vector<SbomInstancePtr> waiting{top};
  while (!waiting.empty()) {
    const SbomInstancePtr current = waiting.back();
    waiting.pop_back();
    const du::SmartPtr<zrk::Instance> instance = current->GetEbomInstance();
    const auto shape = instance ? scene->GetShapeInstance(instance) : nullptr;
    if (shape && !visit(shape)) return;
    const std::vector<SbomInstancePtr> children = current->GetChildren();
    waiting.insert(waiting.end(), children.begin(), children.end());
  }
}

}  // namespace

bool IsPartOrAssemblyVisible(const du::SmartPtr<zrk::ShapeScene>& scene,
                             const du::SmartPtr<zrk::illustration::SbomInstance>& instance) {
  bool visible = false;
  VisitShapes(scene, instance, [&](const du::SmartPtr<zrk::ShapeInstance>& shape) {
    visible = shape->IsVisible();
    return !visible;
  });
  return visible;
}

void GetShapeInstancesForAssembly(const du::SmartPtr<zrk::ShapeScene>& scene,
                                  const du::SmartPtr<zrk::illustration::SbomInstance>& assembly,
                                  std::set<du::SmartPtr<zrk::ShapeInstance>>& shapeInstances) {
  VisitShapes(scene, assembly, [&](const du::SmartPtr<zrk::ShapeInstance>& shape) {
    shapeInstances.insert(shape);
    return true;
  });
}

}  // namespace zrannotations
