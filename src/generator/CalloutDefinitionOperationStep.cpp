#include "generator/CalloutDefinitionOperationStep.h"

#include <limits>

#include <zrannotations/Callout.h>
#include <zrk/illustration/TAnnotation.h>

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

CalloutDefinitionOperationStep::CalloutDefinitionOperationStep(
    const du::SmartPtr<zrannotations::Callout>& callout, const du::SmartPtr<zrk::illustration::TAnnotation>& definition,
    const du::SmartPtr<Callouts>& engine)
    : CalloutOperationStep(callout), definition_(definition), engine_(engine) {}

CalloutDefinitionOperationStep::~CalloutDefinitionOperationStep() = default;

void CalloutDefinitionOperationStep::Undo() {
  m_state = std::numeric_limits<std::int32_t>::max();  // every aspect, not only the definition
  CalloutOperationStep::Undo();
}

void CalloutDefinitionOperationStep::Redo() {
  const auto& callout = GetCallout();
  if (!callout) return;
  callout->UpdateDefinition(definition_);
  if (engine_) engine_->SetCalloutText(callout);
}

}  // namespace zrcallouts
