// Storing labels in callouts and keeping them current.
#include <dp/ReadWriteLock.h>
#include <du/Tracer.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zritemlist/ItemList.h>
#include <zrk/ShapeScene.h>
#include <zrk/View.h>
#include <zrk/illustration/Application.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PlainTextToMarkdown.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrkapp/illustration/OrreryApp.h>

#include <algorithm>

#include "hostlayer/HostLayer.h"
#include "labels/Catalogue.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CombinedCallout;
using zrk::illustration::PlainTextToMarkdown;

namespace zrcallouts {

namespace {

constexpr int kTraceLevel = 2;

bool IsDependency(const zrk::illustration::LabelContent& content, bool includeSystem) {
  const bool isSystem = content.text == "System";
  return content.display == "Value" || (!isSystem && !content.name.empty()) || (includeSystem && isSystem);
}

bool DependsOnData(const du::SmartPtr<Callout>& callout, bool includeSystem) {
  const auto definition = callout ? callout->GetDefinition() : nullptr;
  if (!definition) return false;
  Callouts::Contents contents;
  definition->GetTextContent(contents);
  return std::any_of(contents.begin(), contents.end(),
                     [&](const auto& content) { return content && IsDependency(*content, includeSystem); });
}

bool AnyDependsOnData(const du::SmartPtr<Callout>& callout, bool includeSystem) {
  if (!hostlayer::IsCompound(callout)) return DependsOnData(callout, includeSystem);
  const auto combined = du::DynamicCast<CombinedCallout>(callout);
  if (!combined) return false;
  const auto members = combined->GetCalloutVec();
  return std::any_of(members.begin(), members.end(),
                     [&](const auto& member) { return DependsOnData(member, includeSystem); });
}

}  // namespace

bool Callouts::SetCalloutText(const du::SmartPtr<Callout>& callout) {
  if (!callout) return false;
  const auto combined = du::DynamicCast<CombinedCallout>(callout);
  const std::string label = combined ? CombinedLabel(combined) : LabelFromTemplate(callout);
  // A legacy callout keeps its own text; the members of a combined one were asked one by one.
  if (!combined && callout->CheckDynamicTextForLegacyCallout(label)) return true;
  if (label.empty()) {
    du::Tracer::Trace(kTraceLevel, "zrcallouts", "Callout", "Callouts::SetCalloutText() - Empty Text for callout!");
    return false;
  }
  const du::Symbol text(label);
  if (callout->GetText(false) == text) return false;
  callout->SetText(text, false);
  return true;
}

std::string Callouts::LabelFromTemplate(const du::SmartPtr<Callout>& callout) {
  const auto definition = callout->GetDefinition();
  Contents contents;
  if (definition) definition->GetTextContent(contents);
  std::string label;
  GenerateLabelString(callout, std::move(contents), definition && definition->IsMarkdown(), label);
  return label;
}

// The host joins the members' labels; each member is brought up to date on the way.
std::string Callouts::CombinedLabel(const du::SmartPtr<CombinedCallout>& combined) {
  const bool combinedIsMarkdown = combined->IsMarkdown();
  return CombinedCallout::GenerateLabelString(combined, [this, combinedIsMarkdown](const auto& member) {
    if (!member) return std::string();
    std::string label = LabelFromTemplate(member);
    if (label.empty()) return label;
    if (member->CheckDynamicTextForLegacyCallout(label)) {
      label = member->GetMarkupText();
    } else {
      member->SetText(du::Symbol(label), false);
    }
    return combinedIsMarkdown && !member->IsMarkdown() ? PlainTextToMarkdown(label) : label;
  });
}

bool Callouts::RegenerateCalloutLabel(const du::SmartPtr<Callout>& callout, bool includeSystem) {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return callout && AnyDependsOnData(callout, includeSystem) && SetCalloutText(callout);
}

void Callouts::RegenerateCalloutLabels() {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  bool changed = false;
  for (const auto& callout : CopyOfCallouts()) {
    if (RegenerateCalloutLabel(callout, false)) changed = true;
  }
  if (changed) MarkViewDirty();
}

void Callouts::MarkViewDirty() const {
  const auto scene = GetScene();
  const auto view = scene ? scene->GetView(0) : nullptr;
  if (view) view->SetDirty(true);
}

bool Callouts::RegenerateCalloutLabelOnAdd() const {
  if (!zrk::illustration::IsRunningFoliant()) return true;
  const auto application = zrkapp::illustration::OrreryApp::GetOrreryApp();
  return !application || !application->IsBatchPublishing();
}

void Callouts::SetPredefinedText(const du::SmartPtr<Callout>& callout) {
  std::string text = CatalogueText(kPredefinedTextMessage);
  if (!callout) return;
  if (callout->IsMarkdown()) text = PlainTextToMarkdown(text);
  callout->SetText(du::Symbol(text), false);
}

bool Callouts::HasTemplateText(const du::SmartPtr<Callout>& callout) {
  const auto definition = callout ? callout->GetDefinition() : nullptr;
  if (!definition) return false;
  return definition->RequiresItemList() || !LabelFromTemplate(callout).empty();
}

bool Callouts::CheckForTypeUpdate(du::SmartPtr<Callout>& callout) {
  const auto definition = callout ? callout->GetDefinition() : nullptr;
  if (!definition) return false;
  const bool hasItem = hostlayer::ItemIdOf(callout).has_value();
  if (!definition->RequiresItemList()) {
    if (hasItem) hostlayer::DropItemId(callout);
    return hasItem;
  }
  if (hasItem) return false;
  const auto itemList = HeldItemList();
  const auto items = itemList ? itemList->GetZrkItemList() : nullptr;
  const auto instance = callout->GetSbomInstanceAtPos(0);
  unsigned itemId = 0;
  if (!items || !instance || !items->GetItemIdForInstance(instance, itemId)) return false;
  callout->SetItemId(itemId);
  return true;
}

}  // namespace zrcallouts
