// The end of an engine and a new one, and calls with what is missing, comes from elsewhere or is known to nobody.

#include <algorithm>

#include <zrcallouts/CalloutGenerator.h>
#include <zrcallouts/Functions.h>
#include <zrk/AsyncEvent.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "HostCall.h"

namespace zrfuzz {

using zrcallouts::CalloutGenerator;

namespace {

std::string DestroyEngine(LiveScene& live, unsigned first, unsigned /*second*/) {
  if (first % 4 == 0) return "the engine stays";
  live.DestroyEngine();
  if (first % 4 == 1) {
    live.isPredictable = live.exactHistory = false;
    return "destroy the engine";
  }
  live.MakeEngine();
  return "destroy the engine and make a new one";
}

std::string MakeEngine(LiveScene& live, unsigned /*first*/, unsigned /*second*/) {
  if (live.engine->GetScene()) return "the scene has its engine";
  live.ForgetMarks();
  live.MakeEngine();
  return "make a new engine";
}

/// What a call is made with; all of it missing or all of it from elsewhere.
struct Strangers {
  CalloutPtr callout;
  InsetPtr inset;
  Part part;
  du::SmartPtr<zrk::ShapeView> view;
  unsigned item = 0;
};

struct StrangeCall {
  const char* name;
  void (*make)(LiveScene& live, const Strangers& with);
};

using InstanceSet = std::set<du::SmartPtr<zrk::illustration::SbomInstance>>;

const StrangeCall kStrangeCalls[] = {
    // A host tells an engine of what comes and goes in the engine's own scene only.
    {"nothing arrives, leaves and is drawn",
     [](LiveScene& live, const Strangers& /*with*/) {
       live.engine->OnAddAnnotation(nullptr);
       live.engine->OnRemoveAnnotation(nullptr);
       live.engine->OnShapeInstanceCreate(nullptr);
       live.engine->OnShapeInstanceLocation(nullptr);
       live.engine->OnShapeInstanceVisibility(nullptr, false);
       live.engine->OnShapeInstanceRemove(nullptr);
     }},
    {"inset changes", [](LiveScene& live, const Strangers& with) { live.engine->OnInsetChanged(with.inset); }},
    {"callout is modified",
     [](LiveScene& live, const Strangers& with) { live.engine->OnAnnotationModified(with.callout, true); }},
    {"callout is deleted",
     [](LiveScene& live, const Strangers& with) { live.engine->OnAnnotationDeleted(with.callout, nullptr); }},
    {"callout in no scene comes and goes",
     [](LiveScene& live, const Strangers& /*with*/) {
       live.engine->OnAddAnnotation(live.looseCallout);
       live.engine->OnRemoveAnnotation(live.looseCallout);
     }},
    {"view",
     [](LiveScene& live, const Strangers& with) {
       dg::Camera3D camera;
       live.engine->OnBackgroundColor(with.view);
       live.engine->OnDrawWhenHidden(with.view);
       live.engine->OnHandleTimeoutEvent(with.view, camera);
     }},
    {"item changes",
     [](LiveScene& live, const Strangers& with) {
       live.engine->OnItemContentChanged(with.item, {}, {});
       live.engine->UpdateItemGroupCalloutLeaders(with.item, {with.part.sbom}, {nullptr}, nullptr);
       live.engine->OnItemRemoved(with.item, nullptr);
     }},
    {"a part from elsewhere in an item",
     [](LiveScene& live, const Strangers& with) {
       live.engine->UpdateItemGroupCalloutLeaders(live.ItemAt(0), {with.part.sbom}, {with.part.sbom}, nullptr);
     }},
    {"callout is asked about",
     [](LiveScene& live, const Strangers& with) {
       CalloutPtr callout = with.callout;
       du::Symbol pattern;
       static_cast<void>(live.engine->IsAllowed(callout));
       static_cast<void>(live.engine->HasTemplateText(callout));
       static_cast<void>(live.engine->GetTemplateLocalizableString(callout, pattern));
       static_cast<void>(live.engine->Exists("nowhere", ""));
       live.engine->CheckForTypeUpdate(callout);
       live.engine->SetIndicated(callout, true);
       live.engine->SetIndicated(callout, false);
       live.engine->RequestAnchorPick(callout);
     }},
    {"anchor of a callout",
     [](LiveScene& live, const Strangers& with) { live.engine->UpdateLeaderAnchor(with.callout, with.part.shape); }},
    {"generator",
     [](LiveScene& live, const Strangers& with) {
       const auto generator = zrk::MakeObject<CalloutGenerator>(with.callout ? live.engine : nullptr);
       OperationPtr operation;
       CalloutPtr callout = with.callout;
       unsigned item = 0;
       generator->AddOnSelected({nullptr}, nullptr);
       generator->AddOnItemIds({with.item}, "nobody", zrk::MakeObject<zrk::Operation>("", live.scene, true));
       generator->RemoveFromItemIds({with.item}, nullptr);
       generator->AddOnCopySteps({nullptr}, callout, nullptr);
       generator->RemoveFromItemList(with.item, operation);
       static_cast<void>(generator->GetMatchingItem(nullptr, item));
     }},
    {"sheet", [](LiveScene& live, const Strangers& /*with*/) {
       static_cast<void>(zrcallouts::Callouts::UpdateCallout2DContent(nullptr, live.sheet));
       static_cast<void>(zrcallouts::CreateNewCallout2D(live.sheet, nullptr, true, {}, {}, 1));
       static_cast<void>(zrcallouts::CreateNewCallout2D(nullptr, live.TemplateAt(0), true, {}, {}, 1));
     }}};

std::string CallStrangely(LiveScene& live, unsigned first, unsigned second) {
  Strangers with;
  with.item = second % 4 < 2 ? 0 : 4000000000u;
  if (second % 2 != 0) {
    with.callout = live.foreignCallout;
    with.inset = live.foreignInset;
    with.part = live.foreignPart;
    with.view = du::DynamicCast<zrk::ShapeView>(live.foreignScene->GetView(0));
  }
  const StrangeCall& call = kStrangeCalls[first % std::size(kStrangeCalls)];
  call.make(live, with);
  return std::string(second % 2 != 0 ? "from elsewhere: " : "with nothing: ") + call.name;
}

/// A permutation, in which callouts without an item keep their places.
std::string SortCallouts(LiveScene& live, unsigned first, unsigned /*second*/) {
  auto callouts = live.Watched().Callouts();
  if (first % 2 != 0) callouts.insert(callouts.begin(), {nullptr, live.foreignCallout});
  auto sorted = callouts;
  live.engine->Sort(sorted);
  for (std::size_t i = 0; i < callouts.size(); ++i) {
    unsigned item = 0;
    const bool movable = callouts[i] && callouts[i]->GetItemId(item);
    if (!movable && sorted[i] != callouts[i]) return "BROKEN: sorting moved a callout without item";
  }
  if (!std::is_permutation(callouts.begin(), callouts.end(), sorted.begin())) return "BROKEN: sorting lost a callout";
  return "sort";
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {{1, Effect::Aside, DestroyEngine},
                               {2, Effect::Aside, MakeEngine},
                               {5, Effect::Nothing, CallStrangely},
                               {2, Effect::Nothing, SortCallouts}};

}  // namespace

std::span<const HostCall> EngineCalls() {
  return kCalls;
}

}  // namespace zrfuzz
