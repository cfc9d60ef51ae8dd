#include "ItemRemovalOperationStep.h"

#include <zrk/illustration/ItemsList.h>

namespace zritemlist {

ItemRemovalOperationStep::ItemRemovalOperationStep(const du::SmartPtr<zrk::illustration::ItemsList>& list,
                                                   const std::vector<zrk::illustration::ItemRow>& rows)
    : list_(list), rows_(rows) {}

ItemRemovalOperationStep::~ItemRemovalOperationStep() = default;

void ItemRemovalOperationStep::Undo() {
  const zrk::Observable::UpdateGroup update(list_);
  for (const auto& row : rows_) list_->InsertRow(row);
}

void ItemRemovalOperationStep::Redo() {
  const zrk::Observable::UpdateGroup update(list_);
  for (auto& row : rows_) list_->TakeRow(row.id, row);
}

}  // namespace zritemlist
