#include "leaders/UpdateItemGroupLeadersOperationStep.h"

#include <zrannotations/CombinedCallout.h>

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
    members_.emplace_back(new UpdateItemGroupLeadersOperationStep(member, engine));
  }
}

UpdateItemGroupLeadersOperationStep::~UpdateItemGroupLeadersOperationStep() = default;

void UpdateItemGroupLeadersOperationStep::Undo() {
  Restore([](CalloutOperationStep& step) { step.CalloutOperationStep::Undo(); });
}

void UpdateItemGroupLeadersOperationStep::Redo() {
  Restore([](CalloutOperationStep& step) { step.CalloutOperationStep::Redo(); });
}

// A callout that is not registered at this point of the history is only given its leaders; its arrival registers it.
template <class Exchange>
void UpdateItemGroupLeadersOperationStep::Restore(const Exchange& exchange) {
  const auto& callout = GetCallout();
  {
    const Callouts::Refiling refiling(*engine_, callout);
    for (const auto& member : members_) exchange(*member);
    exchange(*this);
    for (const auto& member : members_) engine_->SetIndicated(member->GetCallout(), false);
    if (engine_->IsRegistered(callout)) engine_->SetIndicated(callout, true);
  }
  callout->NotifyCalloutChanged();
}

}  // namespace zrcallouts
