#include "support/StructureBuilder.h"

#include <dg/DBox.h>
#include <dg/FMat33.h>
#include <dg/Location.h>
#include <zrk/MakeObject.h>

namespace zrtest {

std::string Part::Id() const {
  if (sbom) return sbom->GetId().GetString();
  return design ? design->GetId().GetString() : std::string();
}

StructureBuilder::StructureBuilder(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                                   const du::SmartPtr<zrk::illustration::SbomTree>& tree)
    : scene_(scene), tree_(tree) {}

const Part& StructureBuilder::Root() {
  if (!root_.sbom) {
    root_.design = zrk::MakeObject<zrk::Instance>(NodeOf("product"), du::SmartPtr<zrk::Instance>(), "product");
    root_.sbom = tree_->CreateRoot("product", root_.design);
  }
  return root_;
}

Part StructureBuilder::AddAssembly(const Part& parent, const std::string& name) {
  Part part;
  part.design = zrk::MakeObject<zrk::Instance>(NodeOf(name), parent.design, name);
  part.sbom = tree_->AddInstance(parent.sbom, name, part.design);
  return part;
}

Part StructureBuilder::AddPart(const Part& parent, const std::string& name, const dg::DPoint3D& at) {
  Part part = AddAssembly(parent, name);
  AddShape(part, name, at);
  return part;
}

Part StructureBuilder::AddWeld(const Part& parent, const std::string& name) {
  Part part = AddAssembly(parent, name);
  part.sbom->SetWeld(true);
  return part;
}

Part StructureBuilder::AddSymbol(const std::string& componentId) {
  Part part;
  part.design =
      zrk::MakeObject<zrk::Instance>(zrk::MakeObject<zrk::ComponentInstance>(du::Symbol(componentId)), Root().design);
  part.symbol = zrk::MakeObject<zrannotations::SymbolAnnotation>(part.design);
  AddShape(part, "symbol " + componentId, {});
  return part;
}

du::SmartPtr<zrk::ComponentNode> StructureBuilder::NodeOf(const std::string& name) {
  auto& node = nodes_[name];
  if (!node) node = zrk::MakeObject<zrk::ComponentNode>(name);
  return node;
}

void StructureBuilder::AddShape(Part& part, const std::string& shapeName, const dg::DPoint3D& at) {
  auto& shape = shapes_[shapeName];
  if (!shape) shape = zrk::MakeObject<zrk::Shape>(shapeName);
  const dg::DBox unitCube(dg::DPoint3D(-0.5, -0.5, -0.5), dg::DPoint3D(0.5, 0.5, 0.5));
  part.shape =
      zrk::MakeObject<zrk::ShapeInstance>(part.design, shape, unitCube, dg::Location(dg::FMat33::IDENTITY, at));
  scene_->AddShapeInstance(part.shape);
}

}  // namespace zrtest
