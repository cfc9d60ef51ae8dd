#pragma once

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/ItemRow.h>

namespace zrk::illustration {
class ItemsList;
}

namespace zritemlist {

/// An instance that left a row which others keep, with the row's quantity before and after.
class ItemLeaveOperationStep final : public zrk::OperationStep {
public:
  ItemLeaveOperationStep(const du::SmartPtr<zrk::illustration::ItemsList>& list,
                         const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                         const zrk::illustration::ItemInstanceChange& change);
  ~ItemLeaveOperationStep() override;

  void Undo() override;
  void Redo() override;

private:
  const du::SmartPtr<zrk::illustration::ItemsList> list_;
  const du::SmartPtr<zrk::illustration::SbomInstance> instance_;
  const zrk::illustration::ItemInstanceChange change_;
};

}  // namespace zritemlist
