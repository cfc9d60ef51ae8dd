#include <zrk/illustration/SceneEdit.h>

#include <algorithm>
#include <set>
#include <utility>

#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/CalloutOperationStep.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/CurrentOperation.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/Property.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>

#include "../ShapePlacementStep.h"
#include "../ShapePresenceStep.h"
#include "InstanceRemovalStep.h"
#include "PropertyValueStep.h"

namespace zrk::illustration {

namespace {

using ScenePtr = du::SmartPtr<Illustration3dScene>;
using PartPtr = du::SmartPtr<SbomInstance>;
using OperationPtr = du::SmartPtr<Operation>;
using Parts = std::vector<PartPtr>;
using CalloutPtr = du::SmartPtr<zrannotations::Callout>;
using LeaderVector = std::vector<du::SmartPtr<zrannotations::CalloutLeader>>;
using Changes = std::vector<ShapePlacementStep::Change>;

constexpr const char* kDisplayName = "name";

/// The structure that holds the instance; null when the scene's does not.
du::SmartPtr<SbomTree> FindTree(const ScenePtr& scene, const PartPtr& instance) {
  auto tree = scene && instance ? scene->GetSbomTree() : nullptr;
  if (tree && tree->FindInstance(instance->GetId().GetString()) == instance) return tree;
  return nullptr;
}

/// The instance and everything below it, parents before children and in child order.
Parts CollectBelow(const PartPtr& top) {
  Parts found;
  Parts open{top};
  while (!open.empty()) {
    const PartPtr part = open.back();
    open.pop_back();
    found.push_back(part);
    const Parts children = part->GetChildren();
    open.insert(open.end(), children.rbegin(), children.rend());
  }
  return found;
}

std::set<const zrk::Instance*> GetDesignInstances(const Parts& parts) {
  std::set<const zrk::Instance*> instances;
  for (const PartPtr& part : parts) {
    if (const auto instance = part->GetEbomInstance()) instances.insert(instance.Get());
  }
  return instances;
}

using Symbols = std::vector<du::SmartPtr<zrannotations::SymbolAnnotation>>;

/// The 3D symbols that stand on one of the parts, in the order of the annotation set.
Symbols FindSymbols(const ScenePtr& scene, const Parts& parts) {
  Symbols symbols;
  const auto set = scene->GetAnnoSet();
  if (!set) return symbols;
  const auto instances = GetDesignInstances(parts);
  for (const auto& annotation : set->GetAnnotations()) {
    auto symbol = du::DynamicCast<zrannotations::SymbolAnnotation>(annotation);
    const auto instance = symbol ? symbol->GetInstance() : nullptr;
    const auto parent = instance ? instance->GetParent() : nullptr;
    if (parent && instances.count(parent.Get()) != 0) symbols.push_back(std::move(symbol));
  }
  return symbols;
}

void AppendShapes(const ScenePtr& scene, const du::SmartPtr<zrk::Instance>& instance,
                  ShapePresenceStep::Shapes& shapes) {
  const auto more = scene->GetShapeInstances(instance);
  shapes.insert(shapes.end(), more.begin(), more.end());
}

ShapePresenceStep::Shapes CollectShapes(const ScenePtr& scene, const Parts& parts) {
  ShapePresenceStep::Shapes shapes;
  for (const PartPtr& part : parts) AppendShapes(scene, part->GetEbomInstance(), shapes);
  return shapes;
}

/// The scenes that the insets draw in place of the main one.
std::vector<du::SmartPtr<ShapeScene>> GetSubsetScenes(const ScenePtr& scene) {
  std::vector<du::SmartPtr<ShapeScene>> scenes;
  const auto set = scene->GetAnnoSet();
  if (!set) return scenes;
  for (const auto& annotation : set->GetAnnotations()) {
    const auto inset = du::DynamicCast<zrannotations::Inset>(annotation);
    if (auto subset = inset ? inset->GetSubsetScene() : nullptr) scenes.push_back(std::move(subset));
  }
  return scenes;
}

ShapePresenceStep::Shapes CollectCopies(const ShapeScene& subset, const ShapePresenceStep::Shapes& shapes) {
  ShapePresenceStep::Shapes copies;
  for (const auto& shape : shapes) {
    for (auto& copy : subset.GetShapeInstances(shape->GetInstance())) {
      if (copy->GetShape() == shape->GetShape()) copies.push_back(std::move(copy));
    }
  }
  return copies;
}

/// The shapes below the instance, then what insets show of them.
ShapePresenceStep::Shapes CollectWithCopies(const ScenePtr& scene, const PartPtr& instance) {
  auto all = SceneEdit::GetShapeInstances(scene, instance);
  if (all.empty()) return all;
  const ShapePresenceStep::Shapes shapes = all;
  for (const auto& subset : GetSubsetScenes(scene)) {
    const auto copies = CollectCopies(*subset, shapes);
    all.insert(all.end(), copies.begin(), copies.end());
  }
  return all;
}

/// Whether the leader ends on one of the instances, or on an assembly that is one of the parts.
bool EndsOn(const zrannotations::CalloutLeader& leader, const std::set<const zrk::Instance*>& instances) {
  const auto part = leader.GetSbomInstance();
  const auto shape = leader.GetShapeInstance();
  const auto instance =
      leader.IsAssemblyLeader() ? (part ? part->GetEbomInstance() : nullptr) : (shape ? shape->GetInstance() : nullptr);
  return instance && instances.count(instance.Get()) != 0;
}

/// Shows the first of the leaders when none of them is shown.
void ShowOne(const CalloutPtr& callout, const LeaderVector& leaders, const OperationPtr& operation) {
  if (std::ranges::any_of(leaders, [](const auto& leader) { return !leader->IsHidden(); })) return;
  const auto step = MakeObject<zrannotations::CalloutOperationStep>(callout);
  leaders.front()->SetHidden(false);
  if (operation) operation->AddStep(step);
  callout->NotifyCalloutChanged();
}

// Callouts of items went with the items; the others would stay behind without anything to point at. A text may stand
// alone. A callout that keeps a leader keeps the lost one too, undrawn: its part may come back.
void DeleteCalloutsOn(const ScenePtr& scene, const Parts& parts, const OperationPtr& operation) {
  const auto set = scene->GetAnnoSet();
  if (!set) return;
  const auto instances = GetDesignInstances(parts);
  for (const auto& annotation : set->GetAnnotations()) {
    const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
    if (!callout || callout->GetType() == zrannotations::Callout::TextType) continue;
    LeaderVector kept = callout->GetLeaders();
    const bool losesOne = std::erase_if(kept, [&](const auto& leader) { return EndsOn(*leader, instances); }) != 0;
    std::erase_if(kept, [](const auto& leader) { return !leader->IsResolved(); });
    if (losesOne && kept.empty()) zrannotations::AnnotationEdit::DeleteCallout(scene, callout, operation);
    if (losesOne && !kept.empty()) ShowOne(callout, kept, operation);
  }
}

bool Place(const ScenePtr& scene, Changes changes, const OperationPtr& operation) {
  if (changes.empty()) return false;
  const CurrentOperation current(operation);
  const auto step = MakeObject<ShapePlacementStep>(scene, std::move(changes));
  step->Apply();
  if (operation) operation->AddStep(step);
  return true;
}

// Before the shapes go, so that undo brings them back before the items' callouts look for them.
void LeaveItems(const ScenePtr& scene, const Parts& parts, const OperationPtr& operation) {
  const auto list = zritemlist::ItemList::GetItemListForScene(scene);
  if (!list) return;
  const Observable::UpdateGroup update(list->GetZrkItemList());
  for (const PartPtr& part : parts) list->RemoveInstance(part, operation);
}

}  // namespace

bool SceneEdit::MoveInstance(const ScenePtr& scene, const PartPtr& instance, const dg::DVec3& displacement,
                             const OperationPtr& operation) {
  const bool moves = displacement.x != 0 || displacement.y != 0 || displacement.z != 0;
  if (!moves) return false;
  Changes changes;
  for (const auto& shape : CollectWithCopies(scene, instance)) {
    const ShapePlacementStep::State before{shape->GetLocation(), shape->IsVisible()};
    ShapePlacementStep::State after = before;
    const dg::DPoint3D at = before.location.GetPos();
    after.location.SetPos({at.x + displacement.x, at.y + displacement.y, at.z + displacement.z});
    changes.push_back({shape, before, after});
  }
  return Place(scene, std::move(changes), operation);
}

bool SceneEdit::SetInstanceVisible(const ScenePtr& scene, const PartPtr& instance, bool visible,
                                   const OperationPtr& operation) {
  Changes changes;
  for (const auto& shape : CollectWithCopies(scene, instance)) {
    if (shape->IsVisible() == visible) continue;
    changes.push_back({shape, {shape->GetLocation(), !visible}, {shape->GetLocation(), visible}});
  }
  return Place(scene, std::move(changes), operation);
}

bool SceneEdit::RemoveInstance(const ScenePtr& scene, const PartPtr& instance, const OperationPtr& operation) {
  const auto tree = FindTree(scene, instance);
  if (!tree || !instance->GetParent()) return false;
  const CurrentOperation current(operation);
  const Parts parts = CollectBelow(instance);
  for (const auto& symbol : FindSymbols(scene, parts)) {
    zrannotations::AnnotationEdit::RemoveSymbol(scene, symbol, operation);
  }
  LeaveItems(scene, parts, operation);
  DeleteCalloutsOn(scene, parts, operation);
  const auto shapes = CollectShapes(scene, parts);
  for (const auto& subset : GetSubsetScenes(scene)) {
    const auto copies = CollectCopies(*subset, shapes);
    if (!copies.empty()) ShapePresenceStep::Remove(subset, copies, operation);
  }
  if (!shapes.empty()) ShapePresenceStep::Remove(scene, shapes, operation);
  const auto step = MakeObject<InstanceRemovalStep>(tree, instance);
  if (operation) operation->AddStep(step);
  step->Redo();
  return true;
}

bool SceneEdit::SetInstanceProperty(const ScenePtr& scene, const PartPtr& instance, const PropertyPlace& place,
                                    const std::optional<du::Symbol>& value, const OperationPtr& operation) {
  const auto tree = FindTree(scene, instance);
  if (!tree || place.name.IsEmpty()) return false;
  const auto step = MakeObject<PropertyValueStep>(tree, instance, place, value);
  if (!step->ChangesAnything()) return false;
  const CurrentOperation current(operation);
  if (operation) operation->AddStep(step);
  step->Redo();
  return true;
}

bool SceneEdit::RenameInstance(const ScenePtr& scene, const PartPtr& instance, const std::string& name,
                               const OperationPtr& operation) {
  return SetInstanceProperty(scene, instance, {{}, du::Symbol(kDisplayName), {}}, du::Symbol(name), operation);
}

std::string SceneEdit::GetDisplayName(const PartPtr& instance) {
  if (!instance) return {};
  const auto property = instance->GetProperty({}, du::Symbol(kDisplayName));
  return property ? property->GetValue().GetString() : instance->GetName();
}

std::vector<du::SmartPtr<ShapeInstance>> SceneEdit::GetShapeInstances(const ScenePtr& scene, const PartPtr& instance) {
  if (!FindTree(scene, instance)) return {};
  const Parts parts = CollectBelow(instance);
  auto shapes = CollectShapes(scene, parts);
  for (const auto& symbol : FindSymbols(scene, parts)) AppendShapes(scene, symbol->GetInstance(), shapes);
  return shapes;
}

}  // namespace zrk::illustration
