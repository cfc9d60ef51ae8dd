// Placement of a callout's label. The label has a frame: position and scale of what leader 0 points at, so that the
// label travels with that part while its own position stays; in state 1 the frame is model space itself.

#include <zrannotations/Callout.h>

#include <dg/Camera3D.h>
#include <dg/Pipeline.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/LabelMeasure.h>
#include <zrk/Scene.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

#include "ShapeGeometry.h"

namespace zrannotations {

dg::DPoint3D Callout::GetPosition() const {
  return GetPlacement().position;
}

dg::Location Callout::GetLabelLocation() const {
  return {dg::FMat33::IDENTITY, GetPosition()};
}

void Callout::SetLabelPosition(const dg::DPoint3D& position) {
  {
    const dp::MutexGuard guard(mutex_);
    if (IsSame(label_.position, position)) return;
    label_.position = position;
  }
  NotifyModified(true);
}

dg::DPoint3D Callout::GetMarkupLabelPosition() const {
  const dp::MutexGuard guard(mutex_);
  const bool follows = label_.state != 1 && !leaders_.empty();
  const dg::Location frame = follows ? WithoutRotation(leaders_.front()->GetLocation()) : dg::Location::IDENTITY;
  return label_.position * frame.GetXform();
}

dg::Location Callout::GetLabelFrame() const {
  if (GetLabelPlacementState() == 1) return dg::Location::IDENTITY;
  return WithoutRotation(GetInstanceLocationAtPos(0, false));
}

dg::DBox Callout::GetMarkupPixelBBox(dg::Pipeline& pipeline, zrcontext::Context2D*, int) const {
  dg::DPoint3D center = GetMarkupLabelPosition() * pipeline.GetCamera().GetObjectToPixel();
  if (IsLabelRelativeToScreen()) {
    const du::SmartPtr<zrk::Scene> scene = GetScene();
    const auto view = du::DynamicCast<zrk::ShapeView>(scene ? scene->GetView(0) : nullptr);
    if (view) center = GetLabelRelativeScreenPosition(view);
  }
  const dg::DVec2 size = LabelMeasure::Measure(*this);
  return {dg::DPoint3D(center.x - size.x / 2, center.y - size.y / 2, center.z),
          dg::DPoint3D(center.x + size.x / 2, center.y + size.y / 2, center.z)};
}

bool Callout::IsLabelRelativeToScreen() const {
  return GetPlacement().relativeToScreen;
}

dg::DPoint3D Callout::GetLabelRelativeScreenPosition(const du::SmartPtr<zrk::ShapeView>& view) const {
  if (!view) return dg::DPoint3D::ORIGIN;
  const CalloutLabelPlacement placement = GetPlacement();
  if (!placement.relativeToScreen) return GetMarkupLabelPosition() * view->GetCamera().GetObjectToPixel();
  return {placement.relative.x * view->GetWindowWidth(), placement.relative.y * view->GetWindowHeight(),
          placement.depth};
}

dg::DPoint2D Callout::GetRelativeScreenPosition() const {
  return GetPlacement().relative;
}

void Callout::SetRelativeScreenPosition(const dg::DPoint2D& relative) {
  {
    const dp::MutexGuard guard(mutex_);
    label_.relative = relative;
  }
  NotifyModified(true);
}

void Callout::SetLabelScreenSpaceMode(const du::SmartPtr<zrk::ShapeView>& view) {
  if (!view || view->GetWindowWidth() <= 0 || view->GetWindowHeight() <= 0) return;
  const dg::DPoint3D pixel = GetMarkupLabelPosition() * view->GetCamera().GetObjectToPixel();
  const dg::DPoint2D relative(pixel.x / view->GetWindowWidth(), pixel.y / view->GetWindowHeight());
  {
    const dp::MutexGuard guard(mutex_);
    label_.relativeToScreen = true;
    label_.relative = relative;
    label_.depth = pixel.z;
  }
  NotifyModified(true);
}

void Callout::ClearLabelScreenSpaceMode() {
  {
    const dp::MutexGuard guard(mutex_);
    label_.relativeToScreen = false;
  }
  NotifyModified(true);
}

int Callout::GetLabelPlacementState() const {
  return GetPlacement().state;
}

void Callout::SetLabelPlacementState(int state) {
  const dg::DPoint3D position = GetMarkupLabelPosition();
  const dg::Location frame = WithoutRotation(GetInstanceLocationAtPos(0, false));
  const dp::MutexGuard guard(mutex_);
  const bool framesDiffer = (label_.state == 1) != (state == 1);
  if (framesDiffer) label_.position = state == 1 ? position : IntoFrame(position, frame);
  label_.state = state;
}

void Callout::PlaceDefaultLabel(const dg::DBox& target) {
  const du::SmartPtr<CalloutLeader> first = GetLeaderAtPos(0);
  if (!first) return;
  // At the corner of the target's box: beside it in nearly every view.
  const dg::DPoint3D position = IntoFrame(target.IsEmpty() ? first->GetAnchor() : target.max, GetLabelFrame());
  const dp::MutexGuard guard(mutex_);
  label_.position = position;
}

CalloutLabelPlacement Callout::GetPlacement() const {
  const dp::MutexGuard guard(mutex_);
  return label_;
}

}  // namespace zrannotations
