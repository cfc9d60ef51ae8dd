#include <cstdio>

#include <dg/Location.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SceneEdit.h>

#include "script/Document.h"

namespace zrfigure {
namespace {

using zrk::illustration::SceneEdit;

std::string PositionText(const Vec3& at) {
  char text[96];
  std::snprintf(text, sizeof text, "(%.6g %.6g %.6g)", at.x + 0.0, at.y + 0.0, at.z + 0.0);
  return text;
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
  return text;
}

}  // namespace zrfigure
