#include "CalloutPositionStep.h"

#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Text2D.h>

namespace zrservices::illustration2d {

CalloutPositionStep::CalloutPositionStep(const du::SmartPtr<zrk::illustration2d::Scene2D>& scene,
                                         const CalloutPosition& before, const CalloutPosition& after)
    : scene_(scene), before_(before), after_(after) {}

CalloutPositionStep::~CalloutPositionStep() = default;

void CalloutPositionStep::Undo() {
  Apply(before_);
}

void CalloutPositionStep::Redo() {
  Apply(after_);
}

void CalloutPositionStep::Apply(const CalloutPosition& position) const {
  position.callout->SetPosition(position.position);
  scene_->Annotation2DModified(position.callout);
}

}  // namespace zrservices::illustration2d
