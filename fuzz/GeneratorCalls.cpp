// Callouts made by the component, and what is done to their labels as a whole.

#include <algorithm>

#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/CombinedCallout.h>
#include <zrcallouts/Align.h>
#include <zrcallouts/CalloutGenerator.h>
#include <zrk/AsyncEvent.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>
#include <zrk/illustration/SceneEdit.h>

#include "HostCall.h"

namespace zrfuzz {

using zrcallouts::CalloutGenerator;
using zrk::MakeObject;
using zrk::illustration::SceneEdit;

namespace {

/// Four neighbours in the list of parts at most, by the bits of the choice; the last two bits may bring a null along.
CalloutGenerator::Selection Select(const LiveScene& live, unsigned from, unsigned bits) {
  CalloutGenerator::Selection selection;
  for (unsigned i = 0; i < 4; ++i) {
    if ((bits >> i & 1) == 0) continue;
    selection.push_back(MakeObject<zrk::illustration::SbomInstanceSelectionItem>(live.PartAt(from + i).sbom));
  }
  if (bits >> 4 == 15) selection.emplace_back();
  return selection;
}

std::string Names(const CalloutGenerator::Selection& selection) {
  std::string names;
  for (const auto& item : selection) {
    const auto instance = item ? item->GetSbomInstance() : nullptr;
    names += " " + (instance ? instance->GetId().GetString() : "null");
  }
  return names.empty() ? " nothing" : names;
}

std::string Generate(LiveScene& live, unsigned first, unsigned second) {
  auto selection = Select(live, first, second);
  const bool late = second >> 4 == 3;
  const std::string line = "generate for" + Names(selection) + (late ? ", later" : "");
  const auto event = (second & 64) != 0 ? MakeObject<zrk::AsyncEvent>() : nullptr;
  CalloutGenerator::CreateCallouts(live.engine, std::move(selection), event);
  if (!late) live.RunTasks();
  return line;
}

std::string RunTasks(LiveScene& live, unsigned /*first*/, unsigned /*second*/) {
  live.RunTasks();
  return "run the waiting tasks";
}

std::string CreateManually(LiveScene& live, unsigned first, unsigned second) {
  const auto selection = Select(live, first, second);
  live.Edit("create", [&](auto operation) {
    const auto generator = MakeObject<CalloutGenerator>(live.engine);
    generator->CreateManuallyOnSelected(selection, operation);
    for (const auto& callout : generator->GetCreatedCallouts()) live.engine->SetCalloutText(callout);
    generator->ShowCreatedCallouts(operation);
  });
  return "create by item for" + Names(selection);
}

// A combined callout would go on observing the template that its member had before.
std::string AddOnItem(LiveScene& live, unsigned first, unsigned second) {
  const unsigned item = live.ItemAt(first);
  for (const auto& callout : live.Watched().Callouts()) {
    if (callout->IsCompoundCallout() && callout->CarriesItemId(item)) return "a combined callout has the item";
  }
  const std::string id = second % 3 == 0 ? "" : live.TemplateAt(second)->GetId();
  live.Edit("add on item", [&](const auto& operation) {
    MakeObject<CalloutGenerator>(live.engine)->AddOnItemIds({item}, id, operation);
  });
  return "add callouts on item " + std::to_string(item) + " after '" + id + "'";
}

/// With the low bits: a leader more, on a further part or on an assembly.
std::string AddCallout(LiveScene& live, unsigned first, unsigned second) {
  const Part& part = live.PartAt(first);
  if (SceneEdit::GetShapeInstances(live.scene, part.sbom).empty()) return "nothing to point at, at " + part.Id();
  const auto callout = MakeObject<zrannotations::Callout>();
  if (part.shape) {
    callout->Initialize(live.TemplateAt(second / 4), part.shape);
  } else {
    callout->Initialize(live.TemplateAt(second / 4), live.scene, part.sbom);
  }
  const Part& further = live.PartAt(first + second);
  dg::DPoint3D anchor;
  // A number stands on the parts of its item only.
  const bool canStandElsewhere = !live.TemplateAt(second / 4)->RequiresItemList();
  if (second % 4 == 1 && canStandElsewhere && callout->CalculateAnchor(further.shape, anchor)) {
    callout->ConnectLeader(callout->CreateCalloutLeader(anchor, further.shape));
  }
  if (second % 4 == 2) callout->SetInsetAtPos(live.InsetAt(second), 0);
  live.Edit("add callout", [&](auto operation) {
    MakeObject<CalloutGenerator>(live.engine)->AddCallouts({callout, nullptr}, operation);
  });
  return "add a callout made elsewhere, on " + part.Id() + " after " + live.TemplateAt(second / 4)->GetId();
}

std::string DeleteCallout(LiveScene& live, unsigned first, unsigned /*second*/) {
  const auto callout = live.CalloutAt(first);
  const std::string name = callout ? zrtest::NameOf(*callout) : "no callout";
  live.Edit("delete", [&](const auto& operation) {
    zrannotations::AnnotationEdit::DeleteCallout(live.scene, callout, operation);
  });
  return "delete " + name;
}

// Numbers of one template only: a text whose part is gone would be no member for long, and a combined callout observes
// the template of its first member.
std::string JoinCallouts(LiveScene& live, unsigned first, unsigned second) {
  std::vector<CalloutPtr> joined{live.CalloutAt(first), live.CalloutAt(second)};
  if (first % 3 == 0) joined.push_back(live.CalloutAt(first + second));
  const auto definition = joined.front() ? joined.front()->GetDefinition() : nullptr;
  std::erase_if(joined, [&](const auto& callout) {
    return callout && (!callout->HasItemId() || callout->GetDefinition() != definition);
  });
  std::string line = "join";
  for (const auto& callout : joined) line += callout ? " (" + zrtest::NameOf(*callout) + ")" : " nothing";
  live.Edit("join",
            [&](const auto& operation) { zrannotations::AnnotationEdit::JoinCallouts(live.scene, joined, operation); });
  return line;
}

std::string ChangeSettings(LiveScene& live, unsigned first, unsigned /*second*/) {
  live.engine->SetCombineForSamePart((first & 1) != 0);
  live.engine->SetDrawOneForSamePart((first & 2) != 0);
  live.engine->SetForce2DArrowheads((first & 4) != 0);
  return "settings " + std::to_string(first & 7);
}

// The alignment records the operation itself.
std::string AlignLabels(LiveScene& live, unsigned first, unsigned second) {
  const auto callouts = live.Watched().Callouts();
  zrcallouts::Align::Annotations labels(callouts.begin(), callouts.end());
  const auto mode = static_cast<zrcallouts::Align_Mode>(first % 12);
  std::vector<dg::DPoint3D> line;
  if (mode == zrcallouts::AlongLine) line = {{0, 0, 0}, {static_cast<double>(second % 5), 1, 0}};
  const auto operation = MakeObject<zrk::Operation>("align", live.scene, true);
  const du::SmartPtr<zrcallouts::Align> align(
      new zrcallouts::Align(labels, mode, second % 2 == 0, live.view, operation));
  const bool done = align->Execute(line);
  return "align in mode " + std::to_string(mode) + (second % 2 == 0 ? ", distributed" : "") + (done ? "" : ": refused");
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {
    {12, Effect::Recorded, Generate},    {2, Effect::Recorded, RunTasks},      {4, Effect::Recorded, CreateManually},
    {4, Effect::Recorded, AddOnItem},    {5, Effect::Recorded, AddCallout},    {6, Effect::Recorded, DeleteCallout},
    {4, Effect::Recorded, JoinCallouts}, {3, Effect::Nothing, ChangeSettings}, {3, Effect::Recorded, AlignLabels}};

}  // namespace

std::span<const HostCall> GeneratorCalls() {
  return kCalls;
}

}  // namespace zrfuzz
