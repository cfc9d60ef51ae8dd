#include "ItemInstanceOperationStep.h"

#include <zrk/illustration/ItemsList.h>

namespace zritemlist {

ItemInstanceOperationStep::ItemInstanceOperationStep(const du::SmartPtr<zrk::illustration::ItemsList>& list,
                                                     const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                                     const zrk::illustration::ItemInstanceChange& change, Kind kind)
    : list_(list), instance_(instance), change_(change), kind_(kind) {}

ItemInstanceOperationStep::~ItemInstanceOperationStep() = default;

void ItemInstanceOperationStep::Undo() {
  Set(kind_ == Kind::Left, change_.quantityBefore);
}

void ItemInstanceOperationStep::Redo() {
  Set(kind_ == Kind::Added, change_.quantityAfter);
}

void ItemInstanceOperationStep::Set(bool isMember, unsigned quantity) {
  if (change_.rowCreated) {
    isMember ? list_->InsertRow(row_) : list_->TakeRow(change_.itemId, row_);
  } else if (isMember) {
    list_->JoinRow(change_.itemId, instance_, quantity);
  } else {
    list_->LeaveRow(change_.itemId, instance_, quantity);
  }
}

}  // namespace zritemlist
