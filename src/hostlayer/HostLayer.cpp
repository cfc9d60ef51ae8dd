#include "hostlayer/HostLayer.h"

#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/CalloutSnapshot.h>
#include <zrannotations/Inset.h>
#include <zrannotations/ItemNumberJournal.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/BaseInstance.h>
#include <zrk/ComponentInstance.h>
#include <zrk/CurrentOperation.h>
#include <zrk/Instance.h>
#include <zrk/MultiRootContainer.h>
#include <zrk/Operation.h>
#include <zrk/PickEvent.h>
#include <zrk/Property.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>
#include <zrk/UndoHistory.h>
#include <zrk/World.h>
#include <zrk/illustration/Illu3dPagePreview.h>
#include <zrk/illustration/Illustration3dView.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrkapp/illustration/FileInfo.h>
#include <zrkapp/illustration/IllMultiRootContainer.h>
#include <zrkapp/illustration/LocalizationSettings.h>

namespace zrcallouts::hostlayer {

std::optional<std::uint32_t> ItemIdOf(const CalloutPtr& callout) {
  std::uint32_t itemId = 0;
  if (!callout || !callout->GetItemId(itemId)) return std::nullopt;
  return itemId;
}

bool CarriesAnyItem(const CalloutPtr& callout) {
  return callout && callout->HasItemId();
}

bool CarriesItem(const CalloutPtr& callout, std::uint32_t itemId) {
  return callout && callout->CarriesItemId(itemId);
}

void DropItemId(const CalloutPtr& callout) {
  if (callout) callout->ClearItemId();
}

bool ReadItemChanges(std::uint64_t& position, std::vector<const zrannotations::Callout*>& changed) {
  return zrannotations::ItemNumberJournal::ReadFrom(position, changed);
}

dg::Location LabelLocation(const CalloutPtr& callout) {
  return callout ? callout->GetLabelLocation() : dg::Location::IDENTITY;
}

bool IsCompound(const CalloutPtr& callout) {
  return callout && callout->IsCompoundCallout();
}

bool UsesTemplate(const CalloutPtr& callout) {
  return callout && callout->UsesTemplate();
}

bool IsLabelLocalizable(const CalloutPtr& callout) {
  return callout && callout->IsLabelLocalizable();
}

bool IsLabelFreeInModelSpace(const CalloutPtr& callout) {
  constexpr int kFreeInModelSpace = 1;
  return callout && callout->GetLabelPlacementState() == kFreeInModelSpace;
}

bool IsLabelRelativeToScreen(const CalloutPtr& callout) {
  return callout && callout->IsLabelRelativeToScreen();
}

dg::DPoint3D RelativeScreenPosition(const CalloutPtr& callout) {
  if (!callout) return dg::DPoint3D::ORIGIN;
  const dg::DPoint2D relative = callout->GetRelativeScreenPosition();
  return {relative.x, relative.y, 0};
}

zrannotations::CalloutLabelPlacement LabelPlacementOf(const CalloutPtr& callout) {
  return callout ? callout->TakeSnapshot().label : zrannotations::CalloutLabelPlacement();
}

std::int32_t LeaderAspectsOf(const CalloutPtr& callout) {
  using zrannotations::CalloutSnapshot;
  const std::int32_t ofMembers = CalloutSnapshot::Members | CalloutSnapshot::Text;
  return CalloutSnapshot::Leaders | (IsCompound(callout) ? ofMembers : 0);
}

bool IsItemTagTemplate(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate) {
  return callouttemplate && callouttemplate->GetName() == "Item Tag" && !callouttemplate->ExcludesItemTagTest();
}

void SetReferenceResolution(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate, double value) {
  if (callouttemplate) callouttemplate->SetReferenceResolution(value);
}

bool IsItemTemplate(const zrk::illustration::TAnnotation& callouttemplate) {
  return callouttemplate.IsItemTemplate();
}

std::string IdOf(const du::SmartPtr<zrk::BaseInstance>& instance) {
  return instance ? instance->GetId().GetString() : std::string();
}

bool IsWeld(const SbomInstancePtr& instance) {
  return instance && instance->IsWeld();
}

bool IsWeldMember(const SbomInstancePtr& instance) {
  return instance && instance->IsWeldMember();
}

SbomInstancePtr SbomInstanceOf(const du::SmartPtr<zrk::illustration::SbomInstanceSelectionItem>& item) {
  return item ? item->GetSbomInstance() : SbomInstancePtr();
}

du::SmartPtr<zrk::Property> FindProperty(const SbomInstancePtr& instance, const du::Symbol& group,
                                         const du::Symbol& name, const du::Symbol& shapeSource) {
  return instance ? instance->GetProperty(group, name, shapeSource) : du::SmartPtr<zrk::Property>();
}

du::Symbol ValueOf(const du::SmartPtr<zrk::Property>& property) {
  return property ? property->GetValue() : du::Symbol();
}

dg::DBox2D PageRectangleOf(const du::SmartPtr<zrk::ShapeView>& view) {
  double scale = 1.0;
  return PageRectangleOf(view, scale);
}

dg::DBox2D PageRectangleOf(const du::SmartPtr<zrk::ShapeView>& view, double& scale) {
  const auto illustrationView = du::DynamicCast<zrk::illustration::Illustration3dView>(view);
  if (!illustrationView || !illustrationView->GetPageSizeSettings().pageShown) return dg::DBox2D::EMPTY;
  const auto preview = du::DynamicCast<zrk::illustration::Illu3dPagePreview>(illustrationView->GetPrintPreview());
  if (!preview) return dg::DBox2D::EMPTY;
  scale = preview->GetScale();
  return preview->GetPageRectInPixels();
}

dg::DBox2D WindowRectangleOf(const du::SmartPtr<zrk::ShapeView>& view) {
  if (!view) return dg::DBox2D::EMPTY;
  return {dg::DPoint2D(0, 0), dg::DPoint2D(view->GetWindowWidth(), view->GetWindowHeight())};
}

void RequestPick(const du::SmartPtr<zrk::ShapeView>& view, const du::SmartPtr<zrk::PickEvent>& event) {
  if (view) view->RequestPick(event);
}

bool IsOccluded(const LeaderPtr& leader) {
  return leader && leader->IsOccluded();
}

bool SetOccluded(const LeaderPtr& leader, bool occluded) {
  if (!leader || leader->IsOccluded() == occluded) return false;
  leader->SetOccluded(occluded);
  return true;
}

bool InsetAccepts(const InsetPtr& inset, const CalloutPtr& callout) {
  return inset && inset->AcceptsCallout(callout);
}

bool IsTemplateReleased(const InsetPtr& inset) {
  return inset && inset->IsReleased();
}

du::SmartPtr<zrk::ShapeScene> SubsetSceneOf(const InsetPtr& inset) {
  return inset ? inset->GetSubsetScene() : du::SmartPtr<zrk::ShapeScene>();
}

void TellInsetItsCallouts(const InsetPtr& inset, const std::set<CalloutPtr>& callouts) {
  if (inset) inset->OnCalloutsChanged(callouts);
}

std::string SymbolKeyOf(const du::SmartPtr<zrannotations::SymbolAnnotation>& symbol) {
  return "/" + (symbol ? symbol->GetInstanceId().GetString() : std::string());
}

std::string SymbolKeyOf(const du::SmartPtr<zrk::Instance>& symbol) {
  const auto component = symbol ? symbol->GetComponentInstance() : nullptr;
  return "/" + (component ? component->GetID().GetString() : std::string());
}

bool IsCustom(const InsetPtr& inset) {
  return inset && inset->IsCustom();
}

bool CarriesItem(const du::SmartPtr<zrk::illustration2d::Callout2D>& callout) {
  return callout && callout->HasItemId();
}

du::Symbol IdPathOf(const du::Symbol& id) {
  return du::Symbol("/" + id.GetString());
}

bool NumbersHierarchically(const zrk::illustration::ItemsList::Numbering& numbering) {
  return numbering.hierarchical;
}

bool IsReplaying(const du::SmartPtr<zrk::ShapeScene>& scene) {
  return scene && zrk::UndoHistory::IsRunning(scene);
}

du::SmartPtr<zrk::Operation> CurrentOperation() {
  return zrk::CurrentOperation::Get();
}

bool NotesAreLocalized() {
  const auto world = zrk::World::GetWorld();
  if (!world) return false;
  const auto container = du::DynamicCast<zrkapp::illustration::IllMultiRootContainer>(world->GetMRC());
  const auto fileInfo = container ? container->GetFileInfo() : nullptr;
  const auto settings = fileInfo ? fileInfo->GetLocalizationSettings() : nullptr;
  return settings && settings->GetNotes();
}

}  // namespace zrcallouts::hostlayer
