#include "layout/Layout.h"

#include <algorithm>
#include <string>

#include <dg/DBox.h>
#include <dg/DBox2D.h>
#include <dg/Location.h>
#include <du/Tracer.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/AnnoSet.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>

#include "align/LabelFrame.h"
#include "hostlayer/HostLayer.h"
#include "layout/CalloutLayoutVisitor.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;

namespace zrcallouts {

namespace {

constexpr int kMeasureInPixels = 2;
constexpr int kLabelBoxFlags = 24;

placement::Box ToBox(const dg::DBox2D& box) {
  return {box.min.x, box.min.y, box.max.x, box.max.y};
}

dg::DPoint3D Corner(const dg::DBox& box, unsigned index) {
  return {index & 1 ? box.max.x : box.min.x, index & 2 ? box.max.y : box.min.y, index & 4 ? box.max.z : box.min.z};
}

void Extend(dg::DBox2D& box, const dg::DPoint3D& point) {
  if (box.IsEmpty()) {
    box = {dg::DPoint2D(point.x, point.y), dg::DPoint2D(point.x, point.y)};
    return;
  }
  box.min = {std::min(box.min.x, point.x), std::min(box.min.y, point.y)};
  box.max = {std::max(box.max.x, point.x), std::max(box.max.y, point.y)};
}

// A page too small for its labels is no error, but whoever looks for the reason of a crowded figure finds it here.
void TraceFaults(const placement::PlacementResult& result) {
  if (result.status == placement::PlacementStatus::Complete) return;
  constexpr int kTraceLevel = 2;
  du::Tracer::Trace(kTraceLevel, "zrcallouts", "CalloutGenerator",
                    "Layout: %d unplaced, %d crossings, %d overlaps, %d leaders through labels, %d over the model",
                    result.unplaced, result.leaderCrossings, result.labelOverlaps, result.leadersThroughLabels,
                    result.labelsOverModel);
}

}  // namespace

Layout::Layout(const du::SmartPtr<zrk::ShapeView>& view, const du::SmartPtr<Callouts>& engine)
    : view_(view), engine_(engine), pipeline_(kMeasureInPixels) {
  const dg::Camera3D camera = view_->GetCamera();
  pipeline_.SetCamera(camera);
  objectToPixel_ = camera.GetObjectToPixel();
  pixelToObject_ = objectToPixel_;
  usable_ = pixelToObject_.Invert();
}

bool Layout::Place(const CalloutSet& callouts) {
  if (!usable_ || callouts.empty()) return false;
  const auto request = MakeRequest(callouts);
  const auto result = placement::PlaceLabels(request);
  TraceFaults(result);
  std::size_t index = 0;
  for (const auto& callout : callouts) Apply(callout, result.labels[index++]);
  return true;
}

placement::PlacementRequest Layout::MakeRequest(const CalloutSet& callouts) {
  placement::PlacementRequest request;
  const dg::DBox2D page = hostlayer::PageRectangleOf(view_);
  request.page = ToBox(page.IsEmpty() ? hostlayer::WindowRectangleOf(view_) : page);
  request.model = ModelBox();
  CalloutLayoutVisitor visitor(callouts, [this](const auto& callout) { return LabelBox(callout); });
  if (const auto annoSet = engine_->GetAnnoSet()) annoSet->Visit(visitor);
  request.obstacles = visitor.GetBoxes();
  for (const auto& callout : callouts) {
    const placement::Box box = LabelBox(callout);
    request.labels.push_back(
        {std::to_string(callout->Id()), box.right - box.left, box.bottom - box.top, AnchorsOf(callout)});
  }
  return request;
}

// What the shown shapes cover, by the corners of their boxes: a little larger than the drawing, never smaller.
placement::Box Layout::ModelBox() const {
  dg::DBox2D model = dg::DBox2D::EMPTY;
  const auto scene = view_->GetShapeScene();
  if (!scene) return {};
  for (const auto& shape : scene->GetShapeInstances()) {
    const dg::DBox box = shape->GetBoundingBox();
    if (!shape->IsVisible() || box.IsEmpty()) continue;
    const dg::DMat44 toPixel = shape->GetLocation().GetXform() * objectToPixel_;
    for (unsigned corner = 0; corner < 8; ++corner) Extend(model, Corner(box, corner) * toPixel);
  }
  return model.IsEmpty() ? placement::Box() : ToBox(model);
}

placement::Box Layout::LabelBox(const du::SmartPtr<Callout>& callout) {
  const dg::DBox box = callout->GetMarkupPixelBBox(pipeline_, &context_, kLabelBoxFlags);
  return box.IsEmpty() ? placement::Box() : placement::Box{box.min.x, box.min.y, box.max.x, box.max.y};
}

std::vector<placement::Point> Layout::AnchorsOf(const du::SmartPtr<Callout>& callout) const {
  std::vector<placement::Point> anchors;
  for (const auto& leader : callout->GetLeaders()) {
    if (leader->IsHidden()) continue;
    const dg::DPoint3D pixel = leader->GetAnchor() * objectToPixel_;
    anchors.push_back({pixel.x, pixel.y});
  }
  return anchors;
}

// A label floats at the depth of its first shown anchor.
double Layout::DepthOf(const du::SmartPtr<Callout>& callout) const {
  for (const auto& leader : callout->GetLeaders()) {
    if (!leader->IsHidden()) return (leader->GetAnchor() * objectToPixel_).z;
  }
  return (callout->GetMarkupLabelPosition() * objectToPixel_).z;
}

void Layout::Apply(const du::SmartPtr<Callout>& callout, const placement::PlacedLabel& label) const {
  if (!label.placed) return;
  const double depth = DepthOf(callout);
  const auto toModel = [&](double x, double y) { return dg::DPoint3D(x, y, depth) * pixelToObject_; };
  const dg::DPoint3D centre = toModel((label.box.left + label.box.right) / 2, (label.box.top + label.box.bottom) / 2);
  callout->SetLabelPosition(centre * LabelFrameOf(callout).FromModel());
  std::size_t route = 0;
  for (const auto& leader : callout->GetLeaders()) {
    if (leader->IsHidden() || route >= label.leaders.size()) continue;
    const auto& polyline = label.leaders[route++];
    // Everything behind the anchor, so that the last bend is the point where the leader meets the label.
    std::vector<dg::DPoint3D> bends;
    for (std::size_t i = 1; i < polyline.size(); ++i) bends.push_back(toModel(polyline[i].x, polyline[i].y));
    leader->SetBendPoints(bends);
  }
}

}  // namespace zrcallouts
