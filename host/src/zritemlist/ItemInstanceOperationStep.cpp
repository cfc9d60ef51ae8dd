#include "ItemInstanceOperationStep.h"

#include <zrk/illustration/ItemsList.h>

namespace zritemlist {

ItemInstanceOperationStep::ItemInstanceOperationStep(const du::SmartPtr<zrk::illustration::ItemsList>& list,
                                                     const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                                     const zrk::illustration::ItemInstanceChange& change)
    : list_(list), instance_(instance), change_(change) {}

ItemInstanceOperationStep::~ItemInstanceOperationStep() = default;

void ItemInstanceOperationStep::Undo() {
  if (change_.rowCreated) {
    list_->TakeRow(change_.itemId, row_);
  } else {
    list_->LeaveRow(change_.itemId, instance_, change_.quantityBefore);
  }
}

void ItemInstanceOperationStep::Redo() {
  if (change_.rowCreated) {
    list_->InsertRow(row_);
  } else {
    list_->JoinRow(change_.itemId, instance_, change_.quantityAfter);
  }
}

}  // namespace zritemlist
