// Annotations that leave the scene, and callouts that go with a deleted 3D symbol.
#include <dp/ReadWriteLock.h>
#include <du/LocalizableString.h>
#include <zrannotations/Callout.h>
#include <zrannotations/ConstStrings.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/AnnoSet.h>
#include <zrk/Operation.h>
#include <zrk/ShapeScene.h>

#include "engine/InsetObserver.h"
#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::ConstStrings;
using zrannotations::Inset;
using zrannotations::SymbolAnnotation;

namespace zrcallouts {

namespace {

// How the host numbers the kind "callout" among annotations; not the callout type.
constexpr unsigned kCalloutKind = 2;

}  // namespace

void Callouts::OnRemoveAnnotation(const du::SmartPtr<zrk::Annotation>& annotation) {
  if (const auto inset = du::DynamicCast<Inset>(annotation)) {
    OnRemoveInset(inset);
  } else if (const auto callout = du::DynamicCast<Callout>(annotation)) {
    OnRemoveCallout(callout);
  }
}

// The inset's table entry stays, so that a callout that names the inset again is still tracked.
void Callouts::OnRemoveInset(const du::SmartPtr<Inset>& inset) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  if (const auto found = insetObservers_.find(inset); found != insetObservers_.end()) {
    const auto observer = found->second;
    if (observer) {
      observer->ClearEngine();
      inset->UnregisterObserver(observer);
    }
    insetObservers_.erase(found);
  }
  inset->ReleaseInsetTemplate();
  inset->UnregisterTemplateObserver();
}

void Callouts::OnRemoveCallout(const du::SmartPtr<Callout>& callout) {
  // A callout that an animation still uses keeps its translations.
  callout->GetLocalizableString().SetDeleted(!callout->IsReferencedInAnimation());
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  callout->ReleaseCalloutTemplate();
  Unregister(callout);
  SetIndicated(callout, false);
}

void Callouts::OnAnnotationDeleted(const du::SmartPtr<zrk::Annotation>& annotation,
                                   const du::SmartPtr<zrk::Operation>& operation) {
  if (!annotation || annotation->GetClass() != du::Symbol(ConstStrings::zrSymbol3D)) return;
  const auto scene = GetScene();
  const auto annoSet = scene ? scene->GetAnnoSet() : nullptr;
  const auto symbol = du::DynamicCast<SymbolAnnotation>(annotation);
  if (!annoSet || !symbol) return;
  const std::string key = hostlayer::SymbolKeyOf(symbol);

  std::set<du::SmartPtr<zrk::Annotation>> annotations;
  annoSet->GetRefAnnotationsByType(kCalloutKind, annotations, true);
  for (const auto& candidate : annotations) {
    if (candidate->GetClass() != du::Symbol(ConstStrings::zrCalloutLabel)) continue;
    const auto callout = du::DynamicCast<Callout>(candidate);
    // Only the first leader decides: a callout that points at the symbol with a further leader stays.
    if (callout && callout->GetShapeInstanceIdAtPos(0) == key) {
      annoSet->RemoveRefAnnotationWithDependencies(callout, operation);
    }
  }
}

}  // namespace zrcallouts
