#include "ShapePlacementStep.h"

#include <utility>

#include <zrk/Instance.h>
#include <zrk/Shape.h>
#include <zrk/ShapeScene.h>

namespace zrk {

namespace {

bool IsSame(const dg::Location& left, const dg::Location& right) {
  const dg::DMat44 a = left.GetXform();
  const dg::DMat44 b = right.GetXform();
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      if (a.m[row][column] != b.m[row][column]) return false;
    }
  }
  return true;
}

void Set(const ShapePlacementStep::Change& change, const ShapePlacementStep::State& from,
         const ShapePlacementStep::State& to) {
  if (!IsSame(from.location, to.location)) change.shape->SetLocation(to.location);
  if (from.visible != to.visible) change.shape->SetVisible(to.visible);
}

}  // namespace

ShapePlacementStep::ShapePlacementStep(const du::SmartPtr<Scene>& scene, std::vector<Change> changes)
    : changes_(std::move(changes)), following_(scene) {}

ShapePlacementStep::~ShapePlacementStep() = default;

void ShapePlacementStep::Apply() {
  for (const Change& change : changes_) Set(change, change.before, change.after);
  following_.Finish();
}

void ShapePlacementStep::Undo() {
  for (auto change = changes_.rbegin(); change != changes_.rend(); ++change) {
    Set(*change, change->after, change->before);
  }
  following_.RestoreBefore();
}

void ShapePlacementStep::Redo() {
  for (const Change& change : changes_) Set(change, change.before, change.after);
  following_.RestoreAfter();
}

}  // namespace zrk
