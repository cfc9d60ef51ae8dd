// Labels placed anew: the layout moves them, and steps made of what stood before make the move undoable.
#include <map>

#include <dg/Location.h>
#include <zrannotations/Callout.h>
#include <zrannotations/MoveOperationStep.h>
#include <zrk/Operation.h>
#include <zrk/ShapeView.h>

#include "hostlayer/HostLayer.h"
#include "layout/Layout.h"
#include "layout/LeaderRoutesOperationStep.h"
#include "zrcallouts/Callouts.h"
#include "zrcallouts/Functions.h"

using zrannotations::Callout;
using zrannotations::MoveOperationStep;

namespace zrcallouts {

namespace {

using Places = std::map<du::SmartPtr<Callout>, zrannotations::CalloutLabelPlacement>;

dg::Location PlaceOf(const du::SmartPtr<Callout>& callout) {
  return dg::Location(dg::FMat33::IDENTITY, hostlayer::IsLabelRelativeToScreen(callout)
                                                ? hostlayer::RelativeScreenPosition(callout)
                                                : callout->GetPosition());
}

void AddSteps(const Places& former, std::vector<LeaderRoutesOperationStep::Route> routes,
              const du::SmartPtr<zrk::Operation>& operation) {
  for (const auto& [callout, placement] : former) {
    const dg::Location place = PlaceOf(callout);
    const du::SmartPtr<MoveOperationStep> move(new MoveOperationStep(callout, 0, place, place, false));
    if (!move) continue;
    move->SetPlacementBefore(placement);
    operation->AddStep(move);
  }
  operation->AddStep(du::SmartPtr<zrk::OperationStep>(new LeaderRoutesOperationStep(std::move(routes))));
}

}  // namespace

bool ArrangeLabels(const du::SmartPtr<Callouts>& engine, const du::SmartPtr<zrk::ShapeView>& view,
                   const std::vector<du::SmartPtr<Callout>>& callouts, const du::SmartPtr<zrk::Operation>& operation) {
  Places former;
  for (const auto& callout : callouts) {
    if (callout) former.emplace(callout, hostlayer::LabelPlacementOf(callout));
  }
  if (!engine || !view || former.empty()) return false;
  Layout::CalloutSet labels;
  std::vector<LeaderRoutesOperationStep::Route> routes;
  for (const auto& [callout, placement] : former) {
    labels.insert(callout);
    for (const auto& leader : callout->GetLeaders()) routes.emplace_back(leader, leader->GetBendPoints());
  }
  Layout layout(view, engine);
  if (!layout.Place(labels)) return false;
  for (const auto& [callout, placement] : former) {
    if (placement.relativeToScreen) callout->SetLabelScreenSpaceMode(view);
  }
  if (operation) AddSteps(former, std::move(routes), operation);
  view->SetDirty(true);
  return true;
}

}  // namespace zrcallouts
