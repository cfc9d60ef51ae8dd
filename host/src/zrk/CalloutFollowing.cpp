#include "CalloutFollowing.h"

#include <algorithm>

#include <zrannotations/CalloutLeader.h>
#include <zrannotations/CombinedCallout.h>
#include <zrk/AnnoSet.h>
#include <zrk/Scene.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrk {

using zrannotations::Callout;
using zrannotations::CombinedCallout;

namespace {

bool IsSame(const dg::DPoint3D& left, const dg::DPoint3D& right) {
  return left.x == right.x && left.y == right.y && left.z == right.z;
}

}  // namespace

CalloutFollowing::CalloutFollowing(const du::SmartPtr<Scene>& scene) {
  const auto set = scene ? scene->GetAnnoSet() : nullptr;
  if (!set) return;
  for (const auto& annotation : set->GetAnnotations()) {
    const auto callout = du::DynamicCast<Callout>(annotation);
    if (!callout) continue;
    Add(callout);
    const auto combined = du::DynamicCast<CombinedCallout>(callout);
    if (!combined) continue;
    for (const auto& member : combined->GetCalloutVec()) Add(member);
  }
}

CalloutFollowing::~CalloutFollowing() = default;

void CalloutFollowing::Add(const du::SmartPtr<Callout>& callout) {
  const dg::DPoint3D position = callout->GetPosition();
  labels_.push_back({callout, position, position});
  for (const auto& leader : callout->GetLeaders()) {
    visibilities_.push_back({leader, leader->IsVisible(), leader->IsVisible()});
  }
}

void CalloutFollowing::Finish() {
  for (Label& label : labels_) label.after = label.callout->GetPosition();
  for (Visibility& visibility : visibilities_) visibility.after = visibility.leader->IsVisible();
  std::erase_if(labels_, [](const Label& label) { return IsSame(label.before, label.after); });
  std::erase_if(visibilities_, [](const Visibility& visibility) { return visibility.before == visibility.after; });
}

void CalloutFollowing::RestoreBefore() const {
  for (const Visibility& visibility : visibilities_) visibility.leader->SetVisible(visibility.before);
  for (const Label& label : labels_) label.callout->SetLabelPosition(label.before);
}

void CalloutFollowing::RestoreAfter() const {
  for (const Visibility& visibility : visibilities_) visibility.leader->SetVisible(visibility.after);
  for (const Label& label : labels_) label.callout->SetLabelPosition(label.after);
}

}  // namespace zrk
