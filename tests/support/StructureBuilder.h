#pragma once
// Builds product structures: both sides of the structure and the shapes in the scene, in one call a part.

#include <map>
#include <string>

#include <dg/DPoint3D.h>
#include <du/SmartPtr.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/ComponentInstance.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>

namespace zrtest {

/// One occurrence as the host sees it. An assembly has no shape, a 3D symbol no structure-side instance.
struct Part {
  du::SmartPtr<zrk::Instance> design;
  du::SmartPtr<zrk::illustration::SbomInstance> sbom;
  du::SmartPtr<zrk::ShapeInstance> shape;
  du::SmartPtr<zrannotations::SymbolAnnotation> symbol;

  /// The id under which callouts on it are registered.
  [[nodiscard]] std::string Id() const;
};

/// Equal names share one component and one shape, as repeated parts do.
class StructureBuilder {
public:
  StructureBuilder(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                   const du::SmartPtr<zrk::illustration::SbomTree>& tree);

  /// Made on first use, with the name "product".
  const Part& Root();
  Part AddAssembly(const Part& parent, const std::string& name);
  /// A part with a unit cube around `at` in the scene.
  Part AddPart(const Part& parent, const std::string& name, const dg::DPoint3D& at = {});
  Part AddWeld(const Part& parent, const std::string& name);
  /// A 3D symbol with its shape; its annotation is made but added to no set.
  Part AddSymbol(const std::string& componentId);

private:
  [[nodiscard]] du::SmartPtr<zrk::ComponentNode> NodeOf(const std::string& name);
  void AddShape(Part& part, const std::string& shapeName, const dg::DPoint3D& at);

  du::SmartPtr<zrk::illustration::Illustration3dScene> scene_;
  du::SmartPtr<zrk::illustration::SbomTree> tree_;
  Part root_;
  std::map<std::string, du::SmartPtr<zrk::ComponentNode>> nodes_;
  std::map<std::string, du::SmartPtr<zrk::Shape>> shapes_;
};

}  // namespace zrtest
