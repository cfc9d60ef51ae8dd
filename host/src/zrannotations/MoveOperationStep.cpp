#include <zrannotations/MoveOperationStep.h>

#include <zrannotations/CalloutSnapshot.h>
#include <zrk/illustration/CalloutTemplateObserver.h>

namespace zrannotations {

MoveOperationStep::MoveOperationStep(const du::SmartPtr<Callout>& callout, unsigned index, const dg::Location& from,
                                     const dg::Location& to, bool apply)
    : callout_(callout),
      index_(index),
      from_(from),
      to_(to),
      apply_(apply),
      // A label that is free in model space is moved in model space even while it is pinned to the screen.
      relativeToScreen_(callout && callout->IsLabelRelativeToScreen() && callout->GetLabelPlacementState() != 1) {}

MoveOperationStep::~MoveOperationStep() = default;

void MoveOperationStep::SetPlacementBefore(const CalloutLabelPlacement& placement) {
  before_ = placement;
}

void MoveOperationStep::Undo() {
  if (!before_ || !callout_) return MoveTo(from_);
  after_ = callout_->TakeSnapshot().label;
  Restore(*before_);
}

void MoveOperationStep::Redo() {
  after_ ? Restore(*after_) : MoveTo(to_);
}

void MoveOperationStep::OnAddedToOperation() {
  if (apply_) Redo();
}

dg::Location MoveOperationStep::GetFrom() const {
  return from_;
}

dg::Location MoveOperationStep::GetTo() const {
  return to_;
}

const du::SmartPtr<Callout>& MoveOperationStep::GetCallout() const {
  return callout_;
}

void MoveOperationStep::MoveTo(const dg::Location& location) {
  if (!callout_ || index_ != 0) return;
  const dg::DPoint3D position = location.GetPos();
  if (relativeToScreen_) {
    callout_->SetRelativeScreenPosition(dg::DPoint2D(position.x, position.y));
  } else {
    callout_->SetLabelPosition(position);
  }
}

void MoveOperationStep::Restore(const CalloutLabelPlacement& placement) {
  CalloutSnapshot snapshot;
  snapshot.label = placement;
  callout_->RestoreSnapshot(snapshot, CalloutSnapshot::LabelPosition);
}

}  // namespace zrannotations
