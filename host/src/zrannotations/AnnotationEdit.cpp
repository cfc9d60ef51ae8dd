#include <zrannotations/AnnotationEdit.h>

#include <algorithm>
#include <set>

#include <zrannotations/CalloutOperationStep.h>
#include <zrannotations/CalloutSnapshot.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/AnnoSet.h>
#include <zrk/ComponentInstance.h>
#include <zrk/CurrentOperation.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Markup.h>
#include <zrk/Operation.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SceneEdit.h>
#include <zrk/illustration/TAnnotation.h>

#include "../zrk/ShapePresenceStep.h"
#include "ShapeGeometry.h"

namespace zrannotations {

namespace {

using ScenePtr = du::SmartPtr<zrk::illustration::Illustration3dScene>;
using PartPtr = du::SmartPtr<zrk::illustration::SbomInstance>;
using OperationPtr = du::SmartPtr<zrk::Operation>;
using CalloutVector = std::vector<du::SmartPtr<Callout>>;
using ShapeVector = std::vector<du::SmartPtr<zrk::ShapeInstance>>;

bool IsMember(const ScenePtr& scene, const du::SmartPtr<zrk::Annotation>& annotation) {
  const auto set = scene && annotation ? scene->GetAnnoSet() : nullptr;
  return set && set->Contains(annotation);
}

bool Delete(const ScenePtr& scene, const du::SmartPtr<zrk::Annotation>& annotation, const OperationPtr& operation) {
  if (!IsMember(scene, annotation)) return false;
  const zrk::CurrentOperation current(operation);
  scene->GetAnnoSet()->RemoveAnnotationWithDependencies(annotation, operation);
  return true;
}

du::SmartPtr<zrk::ShapeScene> CopyShapes(const ShapeVector& shapes) {
  auto scene = zrk::MakeObject<zrk::ShapeScene>();
  for (const auto& shape : shapes) {
    const auto copy = zrk::MakeObject<zrk::ShapeInstance>(shape->GetInstance(), shape->GetShape(),
                                                          shape->GetBoundingBox(), shape->GetLocation());
    copy->SetCurrentShapeSource(shape->GetCurrentShapeSource());
    copy->SetVisible(shape->IsVisible());
    scene->AddShapeInstance(copy);
  }
  return scene;
}

du::Symbol MakeSymbolId(const zrk::ShapeScene& scene) {
  for (unsigned number = 1;; ++number) {
    const std::string id = "symbol-" + std::to_string(number);
    if (!scene.FindShapeInstance("/" + id)) return du::Symbol(id);
  }
}

du::SmartPtr<zrk::ShapeInstance> MakeSymbolShape(const du::SmartPtr<zrk::Instance>& instance, const dg::DBox& target) {
  const dg::DVec3 extent = target.max - target.min;
  const double half = std::max({extent.x, extent.y, extent.z}) / 8;
  return zrk::MakeObject<zrk::ShapeInstance>(instance, zrk::MakeObject<zrk::Shape>(instance->GetName()),
                                             dg::DBox({-half, -half, -half}, {half, half, half}),
                                             dg::Location(dg::FMat33::IDENTITY, GetCenter(target)));
}

bool CanJoin(const ScenePtr& scene, const CalloutVector& callouts) {
  const std::set<du::SmartPtr<Callout>> different(callouts.begin(), callouts.end());
  if (callouts.size() < 2 || different.size() != callouts.size()) return false;
  const bool fit = std::all_of(callouts.begin(), callouts.end(), [&](const du::SmartPtr<Callout>& callout) {
    return IsMember(scene, callout) && !callout->IsCompoundCallout();
  });
  return fit && callouts.front()->GetDefinition();
}

/// A combined callout without members that looks like the callout and stands where it stands.
du::SmartPtr<CombinedCallout> MakeCombined(const Callout& like) {
  const auto combined = zrk::MakeObject<CombinedCallout>();
  combined->Initialize(like.GetDefinition(), nullptr);
  combined->RestoreSnapshot(like.TakeSnapshot(), CalloutSnapshot::Definition | CalloutSnapshot::LabelPosition);
  combined->SetCustom(like.IsCustomCallout());
  combined->SetFontFace(like.GetFontFace());
  return combined;
}

void TakeMembers(const du::SmartPtr<CombinedCallout>& combined, const CalloutVector& callouts) {
  for (const auto& callout : callouts) combined->AddMember(callout);
  combined->UpdateLeaderLine();
  const auto text = CombinedCallout::GenerateLabelString(
      combined, [](const du::SmartPtr<Callout>& member) { return member->GetMarkupText(); });
  combined->SetText(du::Symbol(text), false);
}

}  // namespace

du::SmartPtr<Inset> AnnotationEdit::AddInset(const ScenePtr& scene, const PartPtr& instance, const std::string& caption,
                                             const OperationPtr& operation) {
  const ShapeVector shapes = zrk::illustration::SceneEdit::GetShapeInstances(scene, instance);
  const auto set = scene ? scene->GetAnnoSet() : nullptr;
  if (shapes.empty() || !set) return nullptr;
  const auto inset = zrk::MakeObject<Inset>();
  inset->SetInsetCaption(zrk::MakeObject<zrk::Markup>());
  inset->SetCaptionText(du::Symbol(caption), false, false);
  inset->SetBounds(GetModelBox(ShapeSet(shapes.begin(), shapes.end())));
  inset->SetSubsetScene(CopyShapes(shapes));
  const zrk::CurrentOperation current(operation);
  set->AddAnnotationToSet(inset, operation);
  return inset;
}

bool AnnotationEdit::RemoveInset(const ScenePtr& scene, const du::SmartPtr<Inset>& inset,
                                 const OperationPtr& operation) {
  return Delete(scene, inset, operation);
}

du::SmartPtr<SymbolAnnotation> AnnotationEdit::AddSymbol(const ScenePtr& scene, const PartPtr& part,
                                                         const OperationPtr& operation) {
  const auto set = scene ? scene->GetAnnoSet() : nullptr;
  const auto instance = part ? part->GetEbomInstance() : nullptr;
  const auto target = set ? scene->GetShapeInstance(instance) : nullptr;
  if (!target) return nullptr;
  const zrk::CurrentOperation current(operation);
  const auto component = zrk::MakeObject<zrk::ComponentInstance>(MakeSymbolId(*scene));
  const auto symbol = zrk::MakeObject<zrk::Instance>(component, instance);
  const auto annotation = zrk::MakeObject<SymbolAnnotation>(symbol);
  zrk::ShapePresenceStep::Add(scene, {MakeSymbolShape(symbol, GetModelBox(*target))}, operation);
  set->AddAnnotationToSet(annotation, operation);
  return annotation;
}

bool AnnotationEdit::RemoveSymbol(const ScenePtr& scene, const du::SmartPtr<SymbolAnnotation>& symbol,
                                  const OperationPtr& operation) {
  if (!Delete(scene, symbol, operation)) return false;
  const zrk::CurrentOperation current(operation);
  const ShapeVector shapes = scene->GetShapeInstances(symbol->GetInstance());
  if (!shapes.empty()) zrk::ShapePresenceStep::Remove(scene, shapes, operation);
  return true;
}

std::vector<du::SmartPtr<SymbolAnnotation>> AnnotationEdit::GetSymbols(const ScenePtr& scene, const PartPtr& part) {
  std::vector<du::SmartPtr<SymbolAnnotation>> symbols;
  const auto set = scene && part ? scene->GetAnnoSet() : nullptr;
  const auto onPart = set ? part->GetEbomInstance() : nullptr;
  if (!onPart) return symbols;
  for (const auto& annotation : set->GetAnnotations()) {
    const auto symbol = du::DynamicCast<SymbolAnnotation>(annotation);
    const auto instance = symbol ? symbol->GetInstance() : nullptr;
    if (instance && instance->GetParent() == onPart) symbols.push_back(symbol);
  }
  return symbols;
}

du::SmartPtr<CombinedCallout> AnnotationEdit::JoinCallouts(const ScenePtr& scene, const CalloutVector& callouts,
                                                           const OperationPtr& operation) {
  if (!CanJoin(scene, callouts)) return nullptr;
  const zrk::CurrentOperation current(operation);
  const auto set = scene->GetAnnoSet();
  const auto combined = MakeCombined(*callouts.front());
  for (const auto& callout : callouts) set->RemoveAnnotationFromSet(callout, operation);
  // Between leaving and entering: undo frees the members before they go back to the set on their own.
  const auto step = zrk::MakeObject<CalloutOperationStep>(combined);
  TakeMembers(combined, callouts);
  if (operation) operation->AddStep(step);
  set->AddAnnotationToSet(combined, operation);
  return combined;
}

bool AnnotationEdit::DeleteCallout(const ScenePtr& scene, const du::SmartPtr<Callout>& callout,
                                   const OperationPtr& operation) {
  return Delete(scene, callout, operation);
}

}  // namespace zrannotations
