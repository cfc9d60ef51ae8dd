// Commands that change parts; each applies to the part and everything below it.

#include <optional>

#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/SceneEdit.h>

#include "script/CommandTable.h"
#include "script/CommandWords.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

using zrk::illustration::SceneEdit;

Answer MovePart(Workspace& workspace, const Words& words) {
  const auto& part = workspace.FindPart(words[1]);
  const dg::DVec3 by(NumberOf(words[2], "dx"), NumberOf(words[3], "dy"), NumberOf(words[4], "dz"));
  workspace.Edit(words[0], "'" + words[1] + "' would not move", [&](const auto& operation) {
    return SceneEdit::MoveInstance(workspace.Session().GetScene(), part, by, operation);
  });
  return {};
}

Answer ChangeVisibility(Workspace& workspace, const Words& words) {
  const bool visible = words[0] == "show";
  const auto& part = workspace.FindPart(words[1]);
  const std::string refusal = "'" + words[1] + "' is " + (visible ? "shown" : "hidden") + " already";
  workspace.Edit(words[0], refusal, [&](const auto& operation) {
    return SceneEdit::SetInstanceVisible(workspace.Session().GetScene(), part, visible, operation);
  });
  return {};
}

Answer RemovePart(Workspace& workspace, const Words& words) {
  const auto part = workspace.FindPart(words[1]);
  workspace.Edit(words[0], "'" + words[1] + "' cannot be removed", [&](const auto& operation) {
    return SceneEdit::RemoveInstance(workspace.Session().GetScene(), part, operation);
  });
  return {};
}

Answer RenamePart(Workspace& workspace, const Words& words) {
  const auto& part = workspace.FindPart(words[1]);
  if (words[2].empty()) throw CommandError{"a part needs a name"};
  workspace.Edit(words[0], "'" + words[1] + "' has that name already", [&](const auto& operation) {
    return SceneEdit::RenameInstance(workspace.Session().GetScene(), part, words[2], operation);
  });
  return {};
}

// One update of the structure, however many parts a pattern names: labels follow once.
Answer SetProperty(Workspace& workspace, const Words& words) {
  if (words[2].empty()) throw CommandError{"a property needs a name"};
  const HostStructure& structure = workspace.Session().GetStructure();
  const std::vector<int> occurrences = workspace.FindOccurrences(words[1]);
  const SceneEdit::PropertyPlace place{du::Symbol::EMPTY, du::Symbol(words[2]), du::Symbol::EMPTY};
  std::optional<du::Symbol> value;
  if (words.size() > 3) value = du::Symbol(words[3]);
  std::size_t changed = 0;
  workspace.Edit(words[0], "the property is so already", [&](const auto& operation) {
    const zrk::Observable::UpdateGroup update(*structure.GetTree());
    for (int occurrence : occurrences) {
      const auto& part = structure.GetSbomInstance(occurrence);
      changed += SceneEdit::SetInstanceProperty(workspace.Session().GetScene(), part, place, value, operation) ? 1 : 0;
    }
    return changed > 0;
  });
  return {occurrences.size() == 1 ? "" : std::to_string(changed) + " parts changed\n", {{"parts", changed}}};
}

}  // namespace

std::vector<Command> PartCommands() {
  return {
      {"move", "PART DX DY DZ", "Move a part by millimetres along the world's axes", 4, 4, MovePart},
      {"hide", "PART", "Hide a part", 1, 1, ChangeVisibility},
      {"show", "PART", "Show a hidden part again", 1, 1, ChangeVisibility},
      {"remove", "PART", "Remove a part from the model", 1, 1, RemovePart},
      {"rename", "PART NAME", "Give a part another display name", 2, 2, RenamePart},
      {"set-property", "PART|GLOB NAME [VALUE]", "Set a property of a part or of many, or take it away without a value",
       2, 3, SetProperty},
  };
}

}  // namespace zrfigure
