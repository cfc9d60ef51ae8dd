#pragma once
// The undoable change of leaders' routes.

#include <utility>
#include <vector>

#include <dg/DPoint3D.h>
#include <du/SmartPtr.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/OperationStep.h>

namespace zrcallouts {

/// Owned by its operation. Undo and redo exchange the bend points of the leaders for those they had before.
class LeaderRoutesOperationStep final : public zrk::OperationStep {
public:
  using Route = std::pair<du::SmartPtr<zrannotations::CalloutLeader>, std::vector<dg::DPoint3D>>;

  /// `former`: the leaders with their bend points from before the change, in model space.
  explicit LeaderRoutesOperationStep(std::vector<Route> former) : routes_(std::move(former)) {}

  void Undo() override { Exchange(); }
  void Redo() override { Exchange(); }

private:
  void Exchange() {
    for (auto& [leader, bends] : routes_) {
      std::vector<dg::DPoint3D> present = leader->GetBendPoints();
      leader->SetBendPoints(bends);
      bends = std::move(present);
    }
  }

  std::vector<Route> routes_;
};

}  // namespace zrcallouts
