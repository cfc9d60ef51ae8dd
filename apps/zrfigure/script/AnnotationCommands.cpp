// Commands about insets and 3D symbols.

#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/AnnoSet.h>
#include <zrk/illustration/Illustration3dScene.h>

#include "script/CommandTable.h"
#include "script/CommandWords.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

using zrannotations::AnnotationEdit;
using zrannotations::Inset;

Answer AddInset(Workspace& workspace, const Words& words) {
  const auto& part = workspace.FindPart(words[1]);
  du::SmartPtr<Inset> inset;
  workspace.Edit(words[0], "'" + words[1] + "' has no shape", [&](const auto& operation) {
    inset = AnnotationEdit::AddInset(workspace.Session().GetScene(), part, words.size() > 2 ? words[2] : words[1],
                                     operation);
    return static_cast<bool>(inset);
  });
  return {"inset " + std::to_string(inset->Id()) + " added\n", {{"inset", inset->Id()}}};
}

du::SmartPtr<Inset> FindInset(const Workspace& workspace, const std::string& id) {
  const unsigned wanted = CountOf(id, "inset");
  for (const auto& annotation : workspace.Session().GetScene()->GetAnnoSet()->GetAnnotations()) {
    auto inset = du::DynamicCast<Inset>(annotation);
    if (inset && inset->Id() == wanted) return inset;
  }
  throw CommandError{"there is no inset " + id};
}

Answer RemoveInset(Workspace& workspace, const Words& words) {
  const auto inset = FindInset(workspace, words[1]);
  workspace.Edit(words[0], "inset " + words[1] + " cannot be removed", [&](const auto& operation) {
    return AnnotationEdit::RemoveInset(workspace.Session().GetScene(), inset, operation);
  });
  return {"inset " + words[1] + " removed\n", {{"inset", inset->Id()}}};
}

Answer AddSymbol(Workspace& workspace, const Words& words) {
  const auto& part = workspace.FindPart(words[1]);
  du::SmartPtr<zrannotations::SymbolAnnotation> symbol;
  workspace.Edit(words[0], "'" + words[1] + "' is no part with a shape of its own", [&](const auto& operation) {
    symbol = AnnotationEdit::AddSymbol(workspace.Session().GetScene(), part, operation);
    return static_cast<bool>(symbol);
  });
  return {"symbol " + std::to_string(symbol->Id()) + " added\n", {{"symbol", symbol->Id()}}};
}

Answer RemoveSymbol(Workspace& workspace, const Words& words) {
  const auto& scene = workspace.Session().GetScene();
  const auto symbols = AnnotationEdit::GetSymbols(scene, workspace.FindPart(words[1]));
  if (symbols.empty()) throw CommandError{"'" + words[1] + "' has no symbol"};
  workspace.Edit(words[0], "the symbol cannot be removed",
                 [&](const auto& operation) { return AnnotationEdit::RemoveSymbol(scene, symbols.back(), operation); });
  const auto id = symbols.back()->Id();
  return {"symbol " + std::to_string(id) + " removed\n", {{"symbol", id}}};
}

}  // namespace

std::vector<Command> AnnotationCommands() {
  return {
      {"add-inset", "PART [CAPTION]", "Add a detail view of a part", 1, 2, AddInset},
      {"remove-inset", "INSET", "Remove the detail view of that id", 1, 1, RemoveInset},
      {"add-symbol", "PART", "Put a 3D symbol on a part", 1, 1, AddSymbol},
      {"remove-symbol", "PART", "Remove the part's last 3D symbol", 1, 1, RemoveSymbol},
  };
}

}  // namespace zrfigure
