#pragma once

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/ItemRow.h>

namespace zrk::illustration {

class ItemsList;

/// A change of what a row shows, with the values before and after.
class ItemValuesOperationStep final : public OperationStep {
public:
  ItemValuesOperationStep(ItemsList* list, unsigned itemId, const ItemValues& before, const ItemValues& after);
  ~ItemValuesOperationStep() override;

  void Undo() override;
  void Redo() override;

private:
  const du::SmartPtr<ItemsList> list_;
  const unsigned itemId_;
  const ItemValues before_;
  const ItemValues after_;
};

}  // namespace zrk::illustration
