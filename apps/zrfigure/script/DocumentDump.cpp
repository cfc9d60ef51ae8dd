#include <array>
#include <charconv>

#include <dg/Location.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/AnnoSet.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SceneEdit.h>

#include "script/Document.h"

namespace zrfigure {
namespace {

using zrk::illustration::SceneEdit;

/// As few digits as tell the number from all others, so that equal dumps mean equal positions.
std::string NumberText(double number) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number + 0.0).ptr;
  return {text.data(), end};
}

std::string PositionText(const Vec3& at) {
  return "(" + NumberText(at.x) + " " + NumberText(at.y) + " " + NumberText(at.z) + ")";
}

std::string PlaceOf(const OccurrenceTree& tree, int occurrence) {
  return occurrence < 0 ? "nothing" : tree.InstancePath(occurrence);
}

std::string DumpLeader(const OccurrenceTree& tree, const LeaderState& leader) {
  std::string text = "  leader " + PlaceOf(tree, leader.occurrence) + " at " + PositionText(leader.anchor);
  for (const Vec3& bend : leader.bends) text += " by " + PositionText(bend);
  if (leader.hidden) text += " hidden";
  if (!leader.visible) text += " invisible";
  return text + "\n";
}

std::string DumpCallout(const OccurrenceTree& tree, const CalloutState& callout) {
  std::string text = "callout " + std::to_string(callout.id) + " item " + std::to_string(callout.item) + " at " +
                     PositionText(callout.label) + " '" + callout.text + "'\n";
  for (const LeaderState& leader : callout.leaders) text += DumpLeader(tree, leader);
  return text;
}

std::string DumpItem(const OccurrenceTree& tree, const ItemState& item) {
  std::string text = "item " + std::to_string(item.id) + " number '" + item.number + "' quantity " +
                     std::to_string(item.quantity) + " tag '" + item.tag + "'\n";
  for (int occurrence : item.occurrences) text += "  instance " + PlaceOf(tree, occurrence) + "\n";
  return text;
}

/// Insets and 3D symbols; empty for callouts.
std::string DumpOther(zrk::Annotation& annotation) {
  const std::string id = std::to_string(annotation.Id());
  if (const auto* inset = dynamic_cast<zrannotations::Inset*>(&annotation)) {
    return "inset " + id + " '" + inset->GetCaptionText().GetString() + "'\n";
  }
  if (dynamic_cast<zrannotations::SymbolAnnotation*>(&annotation) != nullptr) return "symbol " + id + "\n";
  return {};
}

}  // namespace

std::string Document::Dump() const {
  std::string text;
  const HostStructure& structure = session_->GetStructure();
  for (int occurrence : tree_.DepthFirst()) {
    const auto& instance = structure.GetSbomInstance(occurrence);
    const auto shapes = SceneEdit::GetShapeInstances(session_->GetScene(), instance);
    if (shapes.empty()) continue;
    text += "part " + tree_.InstancePath(occurrence) + " '" + SceneEdit::GetDisplayName(instance) + "'";
    for (const auto& shape : shapes) {
      if (structure.FindOccurrence(shape) != occurrence) continue;
      const dg::DPoint3D at = shape->GetLocation().GetPos();
      text += " at " + PositionText({at.x, at.y, at.z}) + (shape->IsVisible() ? "" : " hidden");
    }
    text += "\n";
  }
  for (const ItemState& item : session_->GetItems()) text += DumpItem(tree_, item);
  for (const CalloutState& callout : session_->GetCallouts()) text += DumpCallout(tree_, callout);
  for (const auto& annotation : session_->GetScene()->GetAnnoSet()->GetAnnotations()) text += DumpOther(*annotation);
  for (const NoteState& note : sheet_->Notes()) {
    text += "note " + std::to_string(note.number) + " item " + std::to_string(note.item) + " '" + note.text + "'\n";
  }
  return text;
}

}  // namespace zrfigure
