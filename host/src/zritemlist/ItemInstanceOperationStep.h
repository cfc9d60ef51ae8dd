#pragma once

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/ItemRow.h>

namespace zrk::illustration {
class ItemsList;
}

namespace zritemlist {

/// An instance that was added to an items list, or left a row which others keep. Undo of a row that came with it keeps
/// the row as it was then, so that redo brings the same row back under the same id.
class ItemInstanceOperationStep final : public zrk::OperationStep {
public:
  enum class Kind { Added, Left };

  ItemInstanceOperationStep(const du::SmartPtr<zrk::illustration::ItemsList>& list,
                            const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                            const zrk::illustration::ItemInstanceChange& change, Kind kind);
  ~ItemInstanceOperationStep() override;

  void Undo() override;
  void Redo() override;

private:
  void Set(bool isMember, unsigned quantity);

  const du::SmartPtr<zrk::illustration::ItemsList> list_;
  const du::SmartPtr<zrk::illustration::SbomInstance> instance_;
  const zrk::illustration::ItemInstanceChange change_;
  const Kind kind_;
  zrk::illustration::ItemRow row_;
};

}  // namespace zritemlist
