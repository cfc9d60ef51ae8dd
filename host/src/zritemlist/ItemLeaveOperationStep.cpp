#include "ItemLeaveOperationStep.h"

#include <zrk/illustration/ItemsList.h>

namespace zritemlist {

ItemLeaveOperationStep::ItemLeaveOperationStep(const du::SmartPtr<zrk::illustration::ItemsList>& list,
                                               const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                               const zrk::illustration::ItemInstanceChange& change)
    : list_(list), instance_(instance), change_(change) {}

ItemLeaveOperationStep::~ItemLeaveOperationStep() = default;

void ItemLeaveOperationStep::Undo() {
  list_->JoinRow(change_.itemId, instance_, change_.quantityBefore);
}

void ItemLeaveOperationStep::Redo() {
  list_->LeaveRow(change_.itemId, instance_, change_.quantityAfter);
}

}  // namespace zritemlist
