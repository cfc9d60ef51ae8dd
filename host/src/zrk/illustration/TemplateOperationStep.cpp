#include "TemplateOperationStep.h"

namespace zrk::illustration {

TemplateOperationStep::TemplateOperationStep(TAnnotation* callouttemplate, const TAnnotation::State& before,
                                             const TAnnotation::State& after, TAnnotation::Change change)
    : callouttemplate_(callouttemplate), before_(before), after_(after), change_(change) {}

TemplateOperationStep::~TemplateOperationStep() = default;

void TemplateOperationStep::Undo() {
  callouttemplate_->Apply(before_, change_);
}

void TemplateOperationStep::Redo() {
  callouttemplate_->Apply(after_, change_);
}

}  // namespace zrk::illustration
