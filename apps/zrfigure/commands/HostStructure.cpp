#include "commands/HostStructure.h"

#include <dg/Location.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>

namespace zrfigure {
namespace {

dg::DBox LocalBox(const Mesh& mesh) {
  dg::DBox box;
  for (const auto& position : mesh.positions) box.Extend(dg::DPoint3D(position[0], position[1], position[2]));
  return box;
}

dg::Location ToLocation(const Placement& placement) {
  dg::FMat33 linear;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      linear.m[row][column] = static_cast<float>(placement.linear[row][column]);
    }
  }
  const Vec3& at = placement.translation;
  return {linear, dg::DPoint3D(at.x, at.y, at.z)};
}

int Find(const std::map<const void*, int>& table, const void* object) {
  const auto found = table.find(object);
  return found == table.end() ? -1 : found->second;
}

}  // namespace

HostStructure::HostStructure(const OccurrenceTree& occurrences,
                             const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene)
    : occurrences_(occurrences), tree_(zrk::MakeObject<zrk::illustration::SbomTree>()) {
  const Model& model = occurrences.GetModel();
  for (const Product& product : model.products) {
    nodes_.push_back(zrk::MakeObject<zrk::ComponentNode>(product.name));
    shapes_.push_back(zrk::MakeObject<zrk::Shape>(product.name));
    boxes_.push_back(LocalBox(product.mesh));
  }
  tree_->BeginUpdate();
  for (std::size_t i = 0; i < model.occurrences.size(); ++i) {
    AddOccurrence(static_cast<int>(i));
    AddShape(static_cast<int>(i), scene);
  }
  for (std::size_t i = 0; i < model.occurrences.size(); ++i) {
    sbomInstances_[i]->SetWeld(occurrences.IsWeld(static_cast<int>(i)));
  }
  tree_->EndUpdate();
  scene->SetSbomTree(tree_);
}

HostStructure::~HostStructure() {
  tree_->DestroyTree();
}

void HostStructure::AddOccurrence(int occurrence) {
  const Occurrence& entry = occurrences_.GetModel().occurrences[occurrence];
  const bool isRoot = entry.parent < 0;
  instances_.push_back(zrk::MakeObject<zrk::Instance>(
      nodes_[entry.product], isRoot ? du::SmartPtr<zrk::Instance>() : instances_[entry.parent], entry.name));
  const std::string& name = occurrences_.ProductOf(occurrence).name;
  sbomInstances_.push_back(isRoot ? tree_->CreateRoot(name, instances_.back())
                                  : tree_->AddInstance(sbomInstances_[entry.parent], name, instances_.back()));
  occurrenceOfSbomInstance_[sbomInstances_.back().Get()] = occurrence;
  SetProperties(occurrence);
}

void HostStructure::AddShape(int occurrence, const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene) {
  const Occurrence& entry = occurrences_.GetModel().occurrences[occurrence];
  if (occurrences_.ProductOf(occurrence).mesh.triangles.empty()) return;
  auto shape = zrk::MakeObject<zrk::ShapeInstance>(instances_[occurrence], shapes_[entry.product],
                                                   boxes_[entry.product], ToLocation(entry.toWorld));
  occurrenceOfShape_[shape.Get()] = occurrence;
  scene->AddShapeInstance(shape);
}

void HostStructure::SetProperties(int occurrence) {
  const auto set = [&](const std::string& name, const std::string& value) {
    tree_->SetProperty(sbomInstances_[occurrence], du::Symbol::EMPTY, du::Symbol(name), du::Symbol(value),
                       du::Symbol::EMPTY);
  };
  const Product& product = occurrences_.ProductOf(occurrence);
  for (const auto& [name, value] : product.properties) set(name, value);
  set("name", product.name);
}

int HostStructure::FindOccurrence(const du::SmartPtr<zrk::illustration::SbomInstance>& instance) const {
  return Find(occurrenceOfSbomInstance_, instance.Get());
}

int HostStructure::FindOccurrence(const du::SmartPtr<zrk::ShapeInstance>& shape) const {
  return Find(occurrenceOfShape_, shape.Get());
}

}  // namespace zrfigure
