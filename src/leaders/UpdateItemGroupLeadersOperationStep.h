#pragma once
// The undoable change of a callout's leaders when its item's group of instances changes.

#include <utility>
#include <vector>

#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/OperationStep.h>

namespace zrcallouts {

class Callouts;

/// Owned by its operation. Holds the leaders before and after, with their hidden flags, and puts either list back; the
/// registry follows.
class UpdateItemGroupLeadersOperationStep final : public zrk::OperationStep {
 public:
  /// A callout's leaders in position order, each with whether it is hidden.
  using Leaders = std::vector<std::pair<du::SmartPtr<zrannotations::CalloutLeader>, bool>>;

  [[nodiscard]] static Leaders LeadersOf(const zrannotations::Callout& callout);

  UpdateItemGroupLeadersOperationStep(const du::SmartPtr<zrannotations::Callout>& callout,
                                      const du::SmartPtr<Callouts>& engine, Leaders before, Leaders after);
  ~UpdateItemGroupLeadersOperationStep() override;

  void Undo() override;
  void Redo() override;

 private:
  void Restore(const Leaders& leaders);

  du::SmartPtr<zrannotations::Callout> callout_;
  du::SmartPtr<Callouts> engine_;
  Leaders before_;
  Leaders after_;
};

}  // namespace zrcallouts
