#include <zrannotations/Callout.h>

#include <utility>

#include <zrannotations/AssemblyShapes.h>
#include <zrannotations/CalloutSnapshot.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/ConstStrings.h>
#include <zrannotations/ItemNumberJournal.h>
#include <zrk/AddressArena.h>
#include <zrk/Scene.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

#include "ShapeGeometry.h"

namespace zrannotations {

using zrk::illustration::CalloutTemplateObserver;

namespace {

zrk::AddressArena& GetArena() {
  // Never destroyed: callouts may outlive the statics of this library. Slots fit the largest class of the family.
  static zrk::AddressArena* const arena = new zrk::AddressArena(sizeof(CombinedCallout));
  return *arena;
}

}  // namespace

void* Callout::operator new(std::size_t size) noexcept {
  return GetArena().Allocate(size);
}

void Callout::operator delete(void* memory) noexcept {
  GetArena().Free(memory);
}

Callout::Callout() : zrk::Annotation(ConstStrings::zrCalloutLabel) {
  // A record from the start, though not in use: marks set on one thread then never exchange the handle that another
  // thread reads.
  localizableString_.SetEnabled(false);
}

Callout::~Callout() {
  ExchangeObserver(nullptr);
  UseTemplate(false);
}

unsigned Callout::GetAnnotationType() const {
  return CalloutKind;
}

void Callout::Initialize(const Template& callouttemplate, const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  if (!callouttemplate && !shapeInstance) return;
  Define(callouttemplate);
  if (!shapeInstance) return;
  SetLeaders({CalloutLeader::MakeForShape(GetModelCenter(*shapeInstance), shapeInstance)});
  PlaceDefaultLabel(GetModelBox(*shapeInstance));
}

void Callout::Initialize(const Template& callouttemplate, const du::SmartPtr<zrk::ShapeScene>& scene,
                         const du::SmartPtr<zrk::illustration::SbomInstance>& assembly) {
  if (!callouttemplate && !assembly) return;
  Define(callouttemplate);
  if (!assembly) return;
  ShapeSet shapes;
  GetShapeInstancesForAssembly(scene, assembly, shapes);
  dg::DPoint3D anchor;
  if (!CalculateAssemblyAnchor(shapes, anchor)) anchor = dg::DPoint3D::ORIGIN;
  SetLeaders({CreateCalloutLeader(anchor, CalculateAssemblyRoughLocation(shapes), assembly, shapes)});
  PlaceDefaultLabel(GetModelBox(shapes));
}

bool Callout::IsInitialized() const {
  const dp::MutexGuard guard(mutex_);
  return flags_.initialized;
}

unsigned Callout::GetType() const {
  const Template definition = GetDefinition();
  if (!definition) return IsInitialized() ? TextType : ItemListType;
  if (definition->RequiresItemList()) return ItemListType;
  return definition->RequiresPropertyVisitor() ? PropertyType : TextType;
}

du::SmartPtr<zrk::illustration::TAnnotation> Callout::GetDefinition() const {
  const dp::MutexGuard guard(mutex_);
  return definition_;
}

// The template's list of observers changes with the callout locked, here and in ExchangeObserver: two threads that
// exchange observer or template must not leave an observer behind in a list where nobody looks for it.
void Callout::UpdateDefinition(const Template& definition) {
  Template previous = definition;
  const dp::MutexGuard guard(mutex_);
  if (definition_ == definition) return;
  definition_.Swap(previous);
  const bool use = std::exchange(usingTemplate_, usingTemplate_ && definition_);
  if (previous && templateObserver_) previous->UnregisterObserver(templateObserver_);
  if (previous && use) previous->RemoveUser();
  if (definition && templateObserver_) definition->RegisterObserver(templateObserver_);
  if (definition && use) definition->AddUser();
}

void Callout::ReleaseCalloutTemplate() {
  UseTemplate(false);
}

void Callout::RegisterTemplateObserver(const du::SmartPtr<CalloutTemplateObserver>& observer) {
  ExchangeObserver(observer);
  UseTemplate(true);
}

void Callout::UnregisterTemplateObserver() {
  ExchangeObserver(nullptr);
}

bool Callout::HasTemplateObserver() const {
  const dp::MutexGuard guard(mutex_);
  return static_cast<bool>(templateObserver_);
}

bool Callout::UsesTemplate() const {
  const dp::MutexGuard guard(mutex_);
  return definition_ && !flags_.custom;
}

bool Callout::IsUsingTemplate() const {
  const dp::MutexGuard guard(mutex_);
  return usingTemplate_;
}

bool Callout::IsCustomCallout() const {
  const dp::MutexGuard guard(mutex_);
  return flags_.custom;
}

void Callout::SetCustom(bool custom) {
  const dp::MutexGuard guard(mutex_);
  flags_.custom = custom;
}

bool Callout::IsKit() const {
  const dp::MutexGuard guard(mutex_);
  return flags_.kit;
}

void Callout::SetKit(bool kit) {
  const dp::MutexGuard guard(mutex_);
  flags_.kit = kit;
}

bool Callout::GetItemId(std::uint32_t& itemId) const {
  const std::uint32_t present = itemId_;
  if (present == 0) return false;
  itemId = present;
  return true;
}

bool Callout::HasItemId() const {
  return itemId_ != 0;
}

bool Callout::CarriesItemId(std::uint32_t itemId) const {
  return itemId != 0 && itemId_ == itemId;
}

void Callout::SetItemId(std::uint32_t itemId) {
  if (itemId_.exchange(itemId) == itemId) return;
  ItemNumberJournal::Record(*this);
}

void Callout::ClearItemId() {
  SetItemId(0);
}

bool Callout::IsCompoundCallout() const {
  return false;
}

du::SmartPtr<CombinedCallout> Callout::GetParent() const {
  ParentLink link;
  {
    const dp::MutexGuard guard(mutex_);
    link = parent_;
  }
  return link ? link->Get() : nullptr;
}

void Callout::SetParentLink(const ParentLink& link) {
  const dp::MutexGuard guard(mutex_);
  parent_ = link;
}

Callout::SceneLink Callout::GetSceneLink() const {
  // A member of a combined callout is in no set of its own.
  const SceneLink own = zrk::Annotation::GetSceneLink();
  if (own) return own;
  const du::SmartPtr<CombinedCallout> parent = GetParent();
  return parent ? static_cast<const Callout&>(*parent).GetSceneLink() : nullptr;
}

void Callout::Define(const Template& callouttemplate) {
  UpdateDefinition(callouttemplate);
  {
    const dp::MutexGuard guard(mutex_);
    flags_.initialized = true;
  }
  UseTemplate(true);
}

void Callout::UseTemplate(bool use) {
  Template definition;
  {
    const dp::MutexGuard guard(mutex_);
    if (!definition_ || usingTemplate_ == use) return;
    usingTemplate_ = use;
    definition = definition_;
  }
  use ? definition->AddUser() : definition->RemoveUser();
}

void Callout::ExchangeObserver(du::SmartPtr<CalloutTemplateObserver> observer) {
  const du::SmartPtr<CalloutTemplateObserver> next = observer;
  const dp::MutexGuard guard(mutex_);
  templateObserver_.Swap(observer);
  if (!definition_ || observer == next) return;
  if (observer) definition_->UnregisterObserver(observer);
  if (next) definition_->RegisterObserver(next);
}

}  // namespace zrannotations
