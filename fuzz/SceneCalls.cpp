// What a user does to the parts of the scene, and the history of it all.

#include <zrk/UndoHistory.h>
#include <zrk/illustration/SceneEdit.h>

#include "HostCall.h"

namespace zrfuzz {

using zrk::illustration::SceneEdit;

namespace {

/// The part, or the whole that it belongs to right below the root.
Part TopOf(const LiveScene& live, const Part& part) {
  Part top = part;
  const auto isRoot = [](const auto& instance) { return !instance || !instance->GetParent(); };
  while (!isRoot(top.sbom) && !isRoot(top.sbom->GetParent())) top.sbom = top.sbom->GetParent();
  top.design = top.sbom->GetEbomInstance();
  top.shape = live.scene->GetShapeInstance(top.design);
  return top;
}

std::string MovePart(LiveScene& live, unsigned first, unsigned second) {
  const Part& part = live.PartAt(first);
  const double way = static_cast<double>(second) / 7;
  live.Edit("move", [&](const auto& operation) {
    SceneEdit::MoveInstance(live.scene, part.sbom, {way, way / 3, -way}, operation);
  });
  return "move " + part.Id() + " by " + std::to_string(way);
}

std::string ShowPart(LiveScene& live, unsigned first, unsigned second) {
  const Part& part = live.PartAt(first);
  const bool visible = second % 2 == 0;
  live.Edit("show",
            [&](const auto& operation) { SceneEdit::SetInstanceVisible(live.scene, part.sbom, visible, operation); });
  return (visible ? "show " : "hide ") + part.Id();
}

/// Texts stay when the assembly they point at goes, and find another anchor there when it is back.
bool HasTextOn(const LiveScene& live, const Part& part) {
  for (const auto& callout : live.Watched().Callouts()) {
    if (callout->GetType() != zrannotations::Callout::TextType) continue;
    for (const auto& leader : callout->GetLeaders()) {
      if (leader->GetAssemblyInstanceId() == part.Id()) return true;
    }
  }
  return false;
}

// Assemblies go as a whole: what points at an assembly keeps its anchor when a part of it goes, but finds another one
// when it comes back to the scene itself.
std::string RemovePart(LiveScene& live, unsigned first, unsigned /*second*/) {
  const Part part = TopOf(live, live.PartAt(first));
  if (HasTextOn(live, part)) return part.Id() + " has a text and stays";
  live.Edit("remove", [&](const auto& operation) { SceneEdit::RemoveInstance(live.scene, part.sbom, operation); });
  return "remove " + part.Id();
}

std::string RenamePart(LiveScene& live, unsigned first, unsigned second) {
  const Part& part = live.PartAt(first);
  const std::string name = second % 4 == 0 ? "" : "name " + std::to_string(second % 4);
  live.Edit("rename",
            [&](const auto& operation) { SceneEdit::RenameInstance(live.scene, part.sbom, name, operation); });
  return "rename " + part.Id() + " to '" + name + "'";
}

// The list of parts stays short: the state of each is compared after every call.
// Assemblies get no part more, as they lose none.
std::string AddPart(LiveScene& live, unsigned /*first*/, unsigned second) {
  constexpr std::size_t kMost = 18;
  static const char* const kNames[] = {"bolt", "nut", "cover"};
  if (live.parts.size() == kMost) return "no part more";
  Part root;
  root.sbom = live.tree->FindInstance("product");
  root.design = root.sbom->GetEbomInstance();
  zrtest::StructureBuilder builder(live.scene, live.tree);
  live.parts.push_back(builder.AddPart(root, kNames[second % 3], {0, 4, static_cast<double>(second)}));
  return "add " + live.parts.back().Id();
}

/// The shape goes and comes, as while a representation is exchanged.
std::string ExchangeShape(LiveScene& live, unsigned first, unsigned /*second*/) {
  const Part& part = live.PartAt(first);
  if (!part.shape || live.tree->FindInstance(part.Id()) != part.sbom) return "no shape at " + part.Id();
  live.scene->RemoveShapeInstance(part.shape);
  live.scene->AddShapeInstance(part.shape);
  return "exchange the shape of " + part.Id();
}

std::string Undo(LiveScene& live, unsigned /*first*/, unsigned /*second*/) {
  return zrk::UndoHistory::Undo(live.scene) ? "undo" : "nothing to undo";
}

std::string Redo(LiveScene& live, unsigned /*first*/, unsigned /*second*/) {
  return zrk::UndoHistory::Redo(live.scene) ? "redo" : "nothing to redo";
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {{8, Effect::Recorded, MovePart},   {8, Effect::Recorded, ShowPart},
                               {5, Effect::Recorded, RemovePart}, {4, Effect::Recorded, RenamePart},
                               {1, Effect::Aside, AddPart},       {1, Effect::Aside, ExchangeShape},
                               {22, Effect::Undo, Undo},          {18, Effect::Redo, Redo}};

}  // namespace

std::span<const HostCall> SceneCalls() {
  return kCalls;
}

}  // namespace zrfuzz
