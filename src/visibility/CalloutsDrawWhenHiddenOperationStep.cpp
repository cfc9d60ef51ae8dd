#include "zrcallouts/CalloutsDrawWhenHiddenOperationStep.h"

#include <vector>

#include <dg/DPoint3D.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/AnnoSet.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/Illustration3dScene.h>

#include "engine/OnFailure.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrk::illustration::Illustration3dScene;

namespace zrcallouts {

/// What the switch may change, as it was before.
struct CalloutsDrawWhenHiddenOperationStep::Former {
  struct Leader {
    du::SmartPtr<zrannotations::CalloutLeader> leader;
    dg::DPoint3D anchor;
    bool calculated;
    bool hidden;
  };

  bool drawWhenHidden = false;
  std::vector<Leader> leaders;

  void Note(const Callout& callout) {
    for (const auto& leader : callout.GetLeaders()) {
      leaders.push_back({leader, leader->GetAnchor(), leader->IsAnchorCalculated(), leader->IsHidden()});
    }
  }
  void PutBack() const {
    for (const Leader& former : leaders) {
      former.leader->SetAnchor(former.anchor);
      former.leader->SetAnchorCalculated(former.calculated);
      former.leader->SetHidden(former.hidden);
    }
  }
};

CalloutsDrawWhenHiddenOperationStep::CalloutsDrawWhenHiddenOperationStep(const du::SmartPtr<Callouts>& engine,
                                                                         bool drawWhenHidden)
    : engine_(engine), drawWhenHidden_(drawWhenHidden) {}

CalloutsDrawWhenHiddenOperationStep::~CalloutsDrawWhenHiddenOperationStep() = default;

void CalloutsDrawWhenHiddenOperationStep::OnAddedToOperation() {
  const auto scene = engine_ ? du::DynamicCast<Illustration3dScene>(engine_->GetScene()) : nullptr;
  if (!scene || former_) return;
  former_ = std::make_unique<Former>();
  former_->drawWhenHidden = scene->GetDrawWhenHidden();
  if (const auto annoSet = scene->GetAnnoSet()) {
    for (const auto& annotation : annoSet->GetAnnotations()) {
      if (const auto callout = du::DynamicCast<Callout>(annotation)) former_->Note(*callout);
    }
  }
  const OnFailure putBack([&] {
    former_->PutBack();
    scene->SetDrawWhenHidden(former_->drawWhenHidden);
  });
  Switch(drawWhenHidden_);
}

void CalloutsDrawWhenHiddenOperationStep::Undo() {
  if (!former_) return;
  former_->PutBack();
  Switch(former_->drawWhenHidden);
}

void CalloutsDrawWhenHiddenOperationStep::Redo() {
  if (former_) Switch(drawWhenHidden_);
}

void CalloutsDrawWhenHiddenOperationStep::Switch(bool drawWhenHidden) const {
  const auto scene = du::DynamicCast<Illustration3dScene>(engine_->GetScene());
  if (!scene) return;
  scene->SetDrawWhenHidden(drawWhenHidden);
  const auto view = scene->GetView(0);
  engine_->OnDrawWhenHidden(du::DynamicCast<zrk::ShapeView>(view));
  if (view) view->SetDirty(true);
}

}  // namespace zrcallouts
