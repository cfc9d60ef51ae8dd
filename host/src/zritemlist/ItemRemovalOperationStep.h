#pragma once

#include <vector>

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/ItemRow.h>

namespace zrk::illustration {
class ItemsList;
}

namespace zritemlist {

/// Rows that were taken out of an items list, as they were.
class ItemRemovalOperationStep final : public zrk::OperationStep {
public:
  ItemRemovalOperationStep(const du::SmartPtr<zrk::illustration::ItemsList>& list,
                           const std::vector<zrk::illustration::ItemRow>& rows);
  ~ItemRemovalOperationStep() override;

  void Undo() override;
  void Redo() override;

private:
  const du::SmartPtr<zrk::illustration::ItemsList> list_;
  std::vector<zrk::illustration::ItemRow> rows_;
};

}  // namespace zritemlist
