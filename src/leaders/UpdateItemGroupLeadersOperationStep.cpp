#include "leaders/UpdateItemGroupLeadersOperationStep.h"

#include <dp/ReadWriteLock.h>

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

UpdateItemGroupLeadersOperationStep::Leaders UpdateItemGroupLeadersOperationStep::LeadersOf(
    const zrannotations::Callout& callout) {
  Leaders leaders;
  for (const auto& leader : callout.GetLeaders()) leaders.emplace_back(leader, leader->IsHidden());
  return leaders;
}

UpdateItemGroupLeadersOperationStep::UpdateItemGroupLeadersOperationStep(
    const du::SmartPtr<zrannotations::Callout>& callout, const du::SmartPtr<Callouts>& engine, Leaders before,
    Leaders after)
    : callout_(callout), engine_(engine), before_(std::move(before)), after_(std::move(after)) {}

UpdateItemGroupLeadersOperationStep::~UpdateItemGroupLeadersOperationStep() = default;

void UpdateItemGroupLeadersOperationStep::Undo() { Restore(before_); }

void UpdateItemGroupLeadersOperationStep::Redo() { Restore(after_); }

// A callout that is not registered at this point of the history is only given its leaders; its arrival registers it.
void UpdateItemGroupLeadersOperationStep::Restore(const Leaders& leaders) {
  const dp::ReadWriteLock::WriteGuard guard(engine_->GetReadWriteLock());
  engine_->RemoveFromMap(callout_);
  std::vector<du::SmartPtr<zrannotations::CalloutLeader>> restored;
  for (const auto& [leader, hidden] : leaders) {
    leader->SetHidden(hidden);
    restored.push_back(leader);
  }
  callout_->SetLeaders(restored);
  if (engine_->IsRegistered(callout_)) engine_->AddToMap(callout_);
  callout_->NotifyCalloutChanged();
}

}  // namespace zrcallouts
