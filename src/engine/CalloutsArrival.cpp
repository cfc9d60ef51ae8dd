// Annotations that arrive in the scene: symbol annotations, insets, callouts.
#include <dg/Location.h>
#include <dp/ReadWriteLock.h>
#include <du/LocalizableString.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/AnnoSet.h>
#include <zrk/Instance.h>
#include <zrk/Kernel.h>
#include <zrk/Markup.h>
#include <zrk/Operation.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/Application.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>

#include <algorithm>

#include "engine/EngineLink.h"
#include "engine/InsetObserver.h"
#include "engine/OnFailure.h"
#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CombinedCallout;
using zrannotations::Inset;
using zrannotations::SymbolAnnotation;

namespace zrcallouts {

namespace {

bool IsPlain(const Callouts::Contents& contents) {
  return std::none_of(contents.begin(), contents.end(),
                      [](const auto& content) { return content && content->type != 0; });
}

// Members without a leader that shows go; true when some are left.
bool DropLeaderlessMembers(CombinedCallout& combined) {
  auto members = combined.GetCalloutVec();
  std::erase_if(members, [](const auto& member) { return !member || member->GetLeaderLineCount(false) == 0; });
  combined.GetCalloutVec().swap(members);
  return !combined.GetCalloutVec().empty();
}

}  // namespace

void Callouts::OnAddAnnotation(const du::SmartPtr<zrk::Annotation>& annotation) {
  if (du::DynamicCast<SymbolAnnotation>(annotation)) {
    OnAddSymbolAnnotation(annotation);
  } else if (const auto inset = du::DynamicCast<Inset>(annotation)) {
    OnAddInset(inset);
  } else if (const auto callout = du::DynamicCast<Callout>(annotation)) {
    OnAddCallout(callout);
  }
}

void Callouts::OnAddSymbolAnnotation(const du::SmartPtr<zrk::Annotation>& annotation) {
  const auto instance = du::StaticCast<SymbolAnnotation>(annotation)->GetInstance();
  if (!instance) return;
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  symbolAnnotations_.emplace(instance, annotation);  // the first symbol annotation of an instance wins
}

void Callouts::OnAddInset(const du::SmartPtr<Inset>& inset) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  if (IsDestroyed()) return;
  const CalloutSet shown = insetTable_[inset];  // creates the entry for an inset that comes before its callouts
  for (const auto& callout : shown) {
    callout->AttachSubsetScene(hostlayer::SubsetSceneOf(inset), "");
    callout->BringToFront();
  }
  // One observer an inset: a second announcement must not leave an unrecorded one behind.
  if (auto& observed = insetObservers_[inset]; !observed) {
    const du::SmartPtr<InsetObserver> observer(new InsetObserver(link_));
    observer->ManageObject(zrk::Kernel::GetKernel());
    inset->RegisterObserver(observer);
    observed = observer;
  }
  const auto caption = inset->GetInsetCaption();
  if (caption && caption->IsVisible()) inset->SetupLocalizationIfNecessary();
  du::LocalizableString localized = inset->GetLocalizableString();
  localized.SetDeleted(false);
  if (!localized.IsEmpty()) OnLanguageChanged(du::SmartPtr<zrk::Annotation>(inset));
}

void Callouts::OnAddCallout(const du::SmartPtr<Callout>& callout) {
  if (!IsRegistered(callout)) AdmitArrivedCallout(callout);
  if (const auto combined = du::DynamicCast<CombinedCallout>(callout)) combined->ReattachChildren();
  // A callout refused for want of leaders is marked too: its removal has cleared the mark just before.
  SetIndicated(callout, true);
}

// Brings a new callout up to date and registers it; one without leaders is taken out of the set again instead.
void Callouts::AdmitArrivedCallout(const du::SmartPtr<Callout>& callout) {
  const bool authoring = zrk::illustration::IsRunningFoliant();
  const bool notes = authoring && hostlayer::NotesAreLocalized();
  const auto definition = callout->GetDefinition();
  Contents contents;
  if (definition) definition->GetTextContent(contents);
  const bool plain = IsPlain(contents);
  const bool itemTag = hostlayer::IsItemTagTemplate(definition);
  const unsigned shownBefore = callout->GetLeaderLineCount(false);
  {
    const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
    callout->UpdateWithCalloutInfo(symbolAnnotations_, insetTable_);
  }
  const auto combined = du::DynamicCast<CombinedCallout>(callout);
  const bool keepsItsText = !itemTag && !combined && plain && !authoring;
  if (!keepsItsText) SetCalloutText(callout);
  LocalizeArrivedCallout(callout, notes);

  const unsigned leaderCount = callout->GetLeaderLineCount(true);
  if (combined && DropLeaderlessMembers(*combined) && leaderCount == 0) combined->UpdateLeaderLine();

  if (callout->GetLeaderLineCount(false) != shownBefore) {
    const auto inset = callout->GetInsetAtPos(0);
    if (!inset || hostlayer::InsetAccepts(inset, callout)) callout->AttachSubsetScene(GetScene(), "");
  }
  if (callout->GetType() != 1 && callout->GetLeaderLineCount(false) == 0) {
    if (const auto annoSet = GetAnnoSet()) annoSet->RemoveAnnotationFromSet(callout, du::SmartPtr<zrk::Operation>());
    return;
  }
  RegisterArrivedCallout(callout, leaderCount);
}

// Setting up the localisation may make a new record; the translations of the old one move over to it.
void Callouts::LocalizeArrivedCallout(const du::SmartPtr<Callout>& callout, bool notes) {
  const auto definition = callout->GetDefinition();
  if (callout->GetType() == 0 || !definition || definition->RequiresPropertyVisitor()) return;
  const du::LocalizableString before = callout->GetLocalizableString();
  callout->SetupLocalizationIfNecessary(notes);
  du::LocalizableString now = callout->GetLocalizableString();
  now.CopyLocales(before);
  now.SetDeleted(false);
  if (!now.IsEmpty()) OnLanguageChanged(du::SmartPtr<zrk::Annotation>(callout));
}

// The label stays where it is while the leaders catch up with their parts.
void Callouts::RegisterArrivedCallout(const du::SmartPtr<Callout>& callout, unsigned leaderCount) {
  // A callout that is not registered is admitted anew when it is announced again.
  const OnFailure leave([&] { Unregister(callout); });
  AddToMap(callout);
  AddToSet(callout);
  const dg::Location label = hostlayer::LabelLocation(callout);
  for (unsigned leader = 0; leader < leaderCount; ++leader) {
    if (const auto shape = callout->GetShapeInstanceAtPos(leader)) callout->OnShapeInstanceLocation(shape);
  }
  callout->SetLabelPosition(label.GetPos());
}

}  // namespace zrcallouts
