#include "ItemValuesOperationStep.h"

#include <zrk/illustration/ItemsList.h>

namespace zrk::illustration {

ItemValuesOperationStep::ItemValuesOperationStep(ItemsList* list, unsigned itemId, const ItemValues& before,
                                                 const ItemValues& after)
    : list_(list), itemId_(itemId), before_(before), after_(after) {}

ItemValuesOperationStep::~ItemValuesOperationStep() = default;

void ItemValuesOperationStep::Undo() {
  list_->SetValues(itemId_, before_);
}

void ItemValuesOperationStep::Redo() {
  list_->SetValues(itemId_, after_);
}

}  // namespace zrk::illustration
