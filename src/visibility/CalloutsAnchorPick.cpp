// Leader anchors on points of their parts that can be seen.
#include <dg/DPoint3D.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>

#include <algorithm>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CalloutLeader;

namespace zrcallouts {

namespace {

enum class Sight { Hidden, Visible };

// An assembly is seen where the first of its shapes can be seen.
Sight PickAnchor(const du::SmartPtr<zrk::ShapeView>& view, CalloutLeader& leader) {
  dg::DPoint3D point = dg::DPoint3D::ORIGIN;
  for (const auto& shape : leader.GetShapeInstances()) {
    if (!hostlayer::FindVisiblePoint(view, shape, point)) continue;
    leader.SetAnchor(point);
    leader.SetAnchorCalculated(true);
    return Sight::Visible;
  }
  return Sight::Hidden;
}

// Each shown leader on a part that cannot be seen gives its place to a hidden leader, in position order.
void ExchangeHiddenFlags(const std::vector<du::SmartPtr<CalloutLeader>>& leaders, const std::vector<Sight>& sights) {
  std::size_t spare = 0;
  for (std::size_t i = 0; i < leaders.size(); ++i) {
    if (leaders[i]->IsHidden() || sights[i] != Sight::Hidden) continue;
    while (spare < leaders.size() && !(leaders[spare]->IsHidden() && sights[spare] == Sight::Visible)) ++spare;
    if (spare == leaders.size()) return;
    leaders[i]->SetHidden(true);
    leaders[spare]->SetHidden(false);
  }
}

}  // namespace

void Callouts::RequestAnchorPick(const du::SmartPtr<Callout>& callout) {
  const auto scene = GetScene();
  const auto view = scene ? du::DynamicCast<zrk::ShapeView>(scene->GetView(0)) : nullptr;
  if (!callout || !hostlayer::HasPickService(view)) return;
  const auto leaders = callout->GetLeaders();
  std::vector<Sight> sights(leaders.size(), Sight::Hidden);
  for (std::size_t i = 0; i < leaders.size(); ++i) {
    sights[i] = leaders[i]->IsAnchorCalculated() ? Sight::Visible : PickAnchor(view, *leaders[i]);
  }
  ExchangeHiddenFlags(leaders, sights);
}

void Callouts::OnDrawWhenHidden(const du::SmartPtr<zrk::ShapeView>& /*view*/) {}

// Labels and leaders are kept current by the notifications that cause such a change, so there is nothing to add here.
void Callouts::OnAnnotationModified(const du::SmartPtr<zrk::Annotation>& /*annotation*/, bool /*geometryOnly*/) {}

}  // namespace zrcallouts
