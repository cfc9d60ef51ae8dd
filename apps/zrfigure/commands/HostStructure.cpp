#include "commands/HostStructure.h"

#include <dg/DBox.h>
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

/// Axes of the viewer as a rotation: x right, y up, z toward the viewer.
dg::FMat33 FrameOf(const ViewDirection& direction) {
  dg::FMat33 frame;
  const Vec3 axes[] = {Cross(direction.up, direction.toViewer), direction.up, direction.toViewer};
  for (int row = 0; row < 3; ++row) {
    frame.m[row][0] = static_cast<float>(axes[row].x);
    frame.m[row][1] = static_cast<float>(axes[row].y);
    frame.m[row][2] = static_cast<float>(axes[row].z);
  }
  return frame;
}

/// Box of a placed mesh along the viewer's axes, relative to the placement's origin.
dg::DBox BoxInFrame(const Mesh& mesh, const Placement& placement, const ViewDirection& direction) {
  const Vec3 right = Cross(direction.up, direction.toViewer);
  dg::DBox box;
  for (const auto& position : mesh.positions) {
    const Vec3 at = TransformVector(placement, ToVec3(position));
    box.Extend(dg::DPoint3D(Dot(at, right), Dot(at, direction.up), Dot(at, direction.toViewer)));
  }
  return box;
}

int Find(const std::map<const void*, int>& table, const void* object) {
  const auto found = table.find(object);
  return found == table.end() ? -1 : found->second;
}

}  // namespace

HostStructure::HostStructure(const OccurrenceTree& occurrences, const ViewDirection& direction,
                             const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene)
    : occurrences_(occurrences), tree_(zrk::MakeObject<zrk::illustration::SbomTree>()) {
  const Model& model = occurrences.GetModel();
  for (const Product& product : model.products) {
    nodes_.push_back(zrk::MakeObject<zrk::ComponentNode>(product.name));
    shapes_.push_back(zrk::MakeObject<zrk::Shape>(product.name));
  }
  tree_->BeginUpdate();
  for (std::size_t i = 0; i < model.occurrences.size(); ++i) {
    AddOccurrence(static_cast<int>(i));
    AddShape(static_cast<int>(i), direction, scene);
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

void HostStructure::AddShape(int occurrence, const ViewDirection& direction,
                             const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene) {
  const Occurrence& entry = occurrences_.GetModel().occurrences[occurrence];
  const Mesh& mesh = occurrences_.ProductOf(occurrence).mesh;
  if (mesh.triangles.empty()) return;
  const Vec3& at = entry.toWorld.translation;
  const dg::Location location(FrameOf(direction), dg::DPoint3D(at.x, at.y, at.z));
  auto shape = zrk::MakeObject<zrk::ShapeInstance>(instances_[occurrence], shapes_[entry.product],
                                                   BoxInFrame(mesh, entry.toWorld, direction), location);
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
