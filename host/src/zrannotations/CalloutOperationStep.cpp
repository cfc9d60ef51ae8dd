#include <zrannotations/CalloutOperationStep.h>

#include <zrannotations/CalloutSnapshot.h>

namespace zrannotations {

CalloutOperationStep::CalloutOperationStep(const du::SmartPtr<Callout>& callout)
    : m_state(CalloutSnapshot::AllAspects), callout_(callout) {
  if (callout_) before_ = std::make_unique<CalloutSnapshot>(callout_->TakeSnapshot());
}

CalloutOperationStep::~CalloutOperationStep() = default;

void CalloutOperationStep::Undo() {
  if (!callout_) return;
  after_ = std::make_unique<CalloutSnapshot>(callout_->TakeSnapshot());
  callout_->RestoreSnapshot(*before_, m_state);
}

void CalloutOperationStep::Redo() {
  if (callout_ && after_) callout_->RestoreSnapshot(*after_, m_state);
}

const du::SmartPtr<Callout>& CalloutOperationStep::GetCallout() const {
  return callout_;
}

}  // namespace zrannotations
