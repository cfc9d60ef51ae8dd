#pragma once
// The undoable change of a callout's leaders and members when its item's group of instances changes or goes.

#include <vector>

#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutOperationStep.h>

namespace zrcallouts {

class Callouts;

/// Owned by its operation; made before the change. Undo and redo put back the leaders of the callout, and for a
/// combined callout its members with their leaders and its text. The registry and the marks of the items follow.
class UpdateItemGroupLeadersOperationStep final : public zrannotations::CalloutOperationStep {
public:
  UpdateItemGroupLeadersOperationStep(const du::SmartPtr<zrannotations::Callout>& callout,
                                      const du::SmartPtr<Callouts>& engine);
  ~UpdateItemGroupLeadersOperationStep() override;

  void Undo() override;
  void Redo() override;
  /// Leaves the registry to the caller, who is refiling the callout and has met a failure in its change.
  void PutBack();

private:
  template <class Exchange>
  void ForAll(const Exchange& exchange);
  template <class Exchange, class Reverse>
  void Restore(const Exchange& exchange, const Reverse& reverse);

  du::SmartPtr<Callouts> engine_;
  std::vector<du::SmartPtr<UpdateItemGroupLeadersOperationStep>> members_;
};

}  // namespace zrcallouts
