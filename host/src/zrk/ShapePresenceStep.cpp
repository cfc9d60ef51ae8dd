#include "ShapePresenceStep.h"

#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/Shape.h>

namespace zrk {

void ShapePresenceStep::Add(const du::SmartPtr<ShapeScene>& scene, const Shapes& shapes,
                            const du::SmartPtr<Operation>& operation) {
  for (const auto& shape : shapes) scene->AddShapeInstance(shape);
  if (operation) operation->AddStep(MakeObject<ShapePresenceStep>(scene, shapes, true));
}

void ShapePresenceStep::Remove(const du::SmartPtr<ShapeScene>& scene, const Shapes& shapes,
                               const du::SmartPtr<Operation>& operation) {
  const auto step = MakeObject<ShapePresenceStep>(scene, shapes, false);
  if (operation) operation->AddStep(step);
  step->Leave();
}

ShapePresenceStep::ShapePresenceStep(const du::SmartPtr<ShapeScene>& scene, const Shapes& shapes, bool added)
    : scene_(scene), added_(added) {
  for (const auto& shape : shapes) places_.push_back({shape, scene->GetPlace(shape)});
}

ShapePresenceStep::~ShapePresenceStep() = default;

void ShapePresenceStep::Undo() {
  added_ ? Leave() : Enter();
}

void ShapePresenceStep::Redo() {
  added_ ? Enter() : Leave();
}

void ShapePresenceStep::Enter() const {
  for (const Place& place : places_) scene_->PutBackShapeInstance(place.shape, place.position);
}

void ShapePresenceStep::Leave() const {
  for (auto place = places_.rbegin(); place != places_.rend(); ++place) scene_->RemoveShapeInstance(place->shape);
}

}  // namespace zrk
