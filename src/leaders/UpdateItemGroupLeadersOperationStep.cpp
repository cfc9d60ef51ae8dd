#include "leaders/UpdateItemGroupLeadersOperationStep.h"

#include <zrannotations/CombinedCallout.h>

#include "engine/OnFailure.h"
#include "engine/Refiling.h"
#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

UpdateItemGroupLeadersOperationStep::UpdateItemGroupLeadersOperationStep(
    const du::SmartPtr<zrannotations::Callout>& callout, const du::SmartPtr<Callouts>& engine)
    : CalloutOperationStep(callout), engine_(engine) {
  m_state = hostlayer::LeaderAspectsOf(callout);
  const auto combined = du::DynamicCast<zrannotations::CombinedCallout>(callout);
  if (!combined) return;
  for (const auto& member : combined->GetCalloutVec()) {
    const du::SmartPtr<UpdateItemGroupLeadersOperationStep> step(
        new UpdateItemGroupLeadersOperationStep(member, engine));
    if (step) members_.push_back(step);
  }
}

UpdateItemGroupLeadersOperationStep::~UpdateItemGroupLeadersOperationStep() = default;

void UpdateItemGroupLeadersOperationStep::Undo() {
  Restore([](CalloutOperationStep& step) { step.CalloutOperationStep::Undo(); },
          [](CalloutOperationStep& step) { step.CalloutOperationStep::Redo(); });
}

void UpdateItemGroupLeadersOperationStep::Redo() {
  Restore([](CalloutOperationStep& step) { step.CalloutOperationStep::Redo(); },
          [](CalloutOperationStep& step) { step.CalloutOperationStep::Undo(); });
}

void UpdateItemGroupLeadersOperationStep::PutBack() {
  ForAll([](CalloutOperationStep& step) { step.CalloutOperationStep::Undo(); });
}

template <class Exchange>
void UpdateItemGroupLeadersOperationStep::ForAll(const Exchange& exchange) {
  for (const auto& member : members_) exchange(*member);
  exchange(*this);
}

// A callout that is not registered at this point of the history is only given its leaders; its arrival registers it.
template <class Exchange, class Reverse>
void UpdateItemGroupLeadersOperationStep::Restore(const Exchange& exchange, const Reverse& reverse) {
  const auto& callout = GetCallout();
  {
    Callouts::Refiling refiling(*engine_, callout);
    ForAll(exchange);
    const OnFailure putBack([&] { ForAll(reverse); });  // a step that failed is still to be undone or redone
    for (const auto& member : members_) engine_->SetIndicated(member->GetCallout(), false);
    if (engine_->IsRegistered(callout)) engine_->SetIndicated(callout, true);
    // Leaders and members are those of then, but they say what their parts and items say now.
    if (engine_->IsRegistered(callout)) engine_->RegenerateCalloutLabel(callout, true);
    refiling.Finish();
  }
  callout->NotifyCalloutChanged();
}

}  // namespace zrcallouts
