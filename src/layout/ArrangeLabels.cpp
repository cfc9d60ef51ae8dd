// Labels placed anew: the layout moves them, and steps made beforehand know the way back.
#include <utility>
#include <vector>

#include <dg/Location.h>
#include <zrannotations/Callout.h>
#include <zrannotations/MoveOperationStep.h>
#include <zrk/Operation.h>
#include <zrk/ShapeView.h>

#include "engine/OnFailure.h"
#include "hostlayer/HostLayer.h"
#include "layout/Layout.h"
#include "layout/LeaderRoutesOperationStep.h"
#include "zrcallouts/Callouts.h"
#include "zrcallouts/Functions.h"

using zrannotations::Callout;
using zrannotations::MoveOperationStep;

namespace zrcallouts {

namespace {

using Steps = std::vector<du::SmartPtr<zrk::OperationStep>>;

// What takes the labels and leaders back to how they stand now; made before anything moves.
Steps StepsBack(const Layout::CalloutSet& callouts) {
  Steps steps;
  std::vector<LeaderRoutesOperationStep::Route> routes;
  for (const auto& callout : callouts) {
    for (const auto& leader : callout->GetLeaders()) routes.emplace_back(leader, leader->GetBendPoints());
    const dg::Location place(dg::FMat33::IDENTITY, callout->GetPosition());
    const du::SmartPtr<MoveOperationStep> move(new MoveOperationStep(callout, 0, place, place, false));
    if (!move) continue;
    move->SetPlacementBefore(hostlayer::LabelPlacementOf(callout));
    steps.push_back(move);
  }
  const du::SmartPtr<zrk::OperationStep> back(new LeaderRoutesOperationStep(std::move(routes)));
  if (back) steps.push_back(back);
  return steps;
}

}  // namespace

bool ArrangeLabels(const du::SmartPtr<Callouts>& engine, const du::SmartPtr<zrk::ShapeView>& view,
                   const std::vector<du::SmartPtr<Callout>>& callouts, const du::SmartPtr<zrk::Operation>& operation) {
  Layout::CalloutSet labels, pinned;
  for (const auto& callout : callouts) {
    if (callout) labels.insert(callout);
    if (hostlayer::IsLabelRelativeToScreen(callout)) pinned.insert(callout);
  }
  if (!engine || !view || labels.empty()) return false;
  const Steps steps = StepsBack(labels);
  const OnFailure takeBack([&] {
    for (const auto& step : steps) step->Undo();
  });
  if (!Layout(view, engine).Place(labels)) return false;
  for (const auto& callout : pinned) callout->SetLabelScreenSpaceMode(view);
  for (const auto& step : steps) {
    if (operation) operation->AddStep(step);
  }
  view->SetDirty(true);
  return true;
}

}  // namespace zrcallouts
