#include "zrcallouts/Align.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <dg/Angle.h>
#include <dg/Camera3D.h>
#include <dg/DBox.h>
#include <dg/FMat33.h>
#include <dg/Location.h>
#include <zrannotations/Callout.h>
#include <zrannotations/MoveOperationStep.h>
#include <zrcontext/Context2D.h>
#include <zrk/Operation.h>
#include <zrk/RecordOperation.h>
#include <zrk/ShapeView.h>

#include "align/AlignGeometry.h"
#include "align/LabelFrame.h"
#include "hostlayer/HostLayer.h"

using zrannotations::Callout;

namespace zrcallouts {

namespace {

constexpr int kMeasureInPixels = 2;
constexpr int kLabelBoxFlags = 24;
constexpr double kMarginPerScale = 10.0;
constexpr double kHalfTurn = 3.14159265358979323846;

dg::DPoint2D Flat(const dg::DPoint3D& point) {
  return {point.x, point.y};
}

// The directions of the world axes on screen, turned into the upper half and scaled so that the longest has length 1.
std::array<dg::DVec2, 3> ProjectAxes(const dg::DMat44& objectToPixel) {
  const std::array<dg::DVec3, 3> world{dg::DVec3(1, 0, 0), dg::DVec3(0, 1, 0), dg::DVec3(0, 0, 1)};
  std::array<dg::DVec2, 3> axes;
  double longest = 0;
  for (std::size_t i = 0; i < axes.size(); ++i) {
    const dg::DVec3 onScreen = world[i] * objectToPixel;
    axes[i] = {onScreen.x, onScreen.y};
    if (dg::Angle(axes[i]) > kHalfTurn) axes[i] = {-axes[i].x, -axes[i].y};
    const double length = axes[i].Length();
    if (!std::isnan(length)) longest = std::max(longest, length);
  }
  if (longest > 0) {
    for (auto& axis : axes) axis = {axis.x / longest, axis.y / longest};
  }
  return axes;
}

}  // namespace

dg::DMat44 Align::m_ObjToPx = dg::DMat44::IDENTITY;
int Align::m_idx = 0;

// The way of an annotation of the command. Without a callout it is none that could be moved.
struct Align::Label {
  du::SmartPtr<Callout> callout;
  dg::DPoint3D pixel;  // where it is on screen; for the distribution, where `to` is
  LabelFrame frame;
  dg::DPoint3D from{};  // in model space, like `to`
  dg::DPoint3D to{};
};

Align::Align(Annotations& annotations, Align_Mode mode, du::SmartPtr<zrk::ShapeView> view)
    : Align(annotations, mode, false, view, du::SmartPtr<zrk::Operation>()) {}

Align::Align(Annotations& annotations, Align_Mode mode, bool distribute, du::SmartPtr<zrk::ShapeView> view,
             du::SmartPtr<zrk::Operation> operation)
    : annotations_(annotations),
      mode_(mode),
      distribute_(distribute),
      view_(view),
      operation_(operation),
      pipeline_(kMeasureInPixels) {}

Align::Align(const Align& other)
    : RefCounted(other),
      annotations_(other.annotations_),
      mode_(other.mode_),
      distribute_(other.distribute_),
      view_(other.view_),
      operation_(other.operation_),
      range_(other.range_),
      spacing_(other.spacing_),
      axes_(other.axes_),
      lineStart_(other.lineStart_),
      lineEnd_(other.lineEnd_),
      pageBox_(other.pageBox_),
      pageScale_(other.pageScale_),
      labelsOutsidePage_(other.labelsOutsidePage_),
      pipeline_(other.pipeline_),
      slanted_(other.slanted_),
      lineCentre_(other.lineCentre_),
      lineDirection_(other.lineDirection_),
      previous_(other.previous_) {}

Align::~Align() {
  delete context_;
}

bool Align::IsAxisAvailable(const du::SmartPtr<zrk::ShapeView>& view, Align_Mode mode) {
  if (!view) return false;
  if (!alignment::IsAxisMode(mode)) return true;
  const auto axes = ProjectAxes(view->GetCamera().GetObjectToPixel());
  return alignment::HasDirection(axes[alignment::AxisIndex(mode)]);
}

bool Align::FindIntersectionPoints(const dg::DPoint2D& point, const dg::DVec2& direction, const dg::DBox2D& box,
                                   std::array<dg::DPoint2D, 2>& result) {
  if (direction.x == 0 || direction.y == 0 || box.IsEmpty()) return false;
  std::size_t found = 0;
  for (const double x : {box.min.x, box.max.x}) {
    const double y = point.y + (x - point.x) * direction.y / direction.x;
    if (y >= box.min.y && y <= box.max.y) result[found++] = {x, y};
  }
  for (const double y : {box.min.y, box.max.y}) {
    if (found == result.size()) break;
    const double x = point.x + (y - point.y) * direction.x / direction.y;
    if (x >= box.min.x && x <= box.max.x) result[found++] = {x, y};
  }
  return found == result.size();
}

dg::DPoint3D Align::PixelPosition(const du::SmartPtr<Callout>& callout) const {
  return hostlayer::IsLabelRelativeToScreen(callout) ? callout->GetLabelRelativeScreenPosition(view_)
                                                     : callout->GetMarkupLabelPosition() * m_ObjToPx;
}

// Every label is asked once, for its place and for its frame while its part is at hand: nothing moves before the last
// one has answered.
Align::Labels Align::CollectLabels() const {
  Labels labels;
  labels.reserve(annotations_.size());
  for (const auto& annotation : annotations_) {
    Label& label = labels.emplace_back();
    label.callout = du::DynamicCast<Callout>(annotation);
    if (label.callout) label.pixel = PixelPosition(label.callout);
    label.frame = LabelFrameOf(label.callout);
  }
  return labels;
}

bool Align::CollectData(const std::vector<dg::DPoint3D>& points, Labels& labels) {
  if (!view_) return false;
  m_ObjToPx = view_->GetCamera().GetObjectToPixel();
  m_idx = 0;
  if (alignment::IsSpreadMode(mode_)) {
    if (mode_ == SpreadY) m_idx = 1;
    labels = CollectLabels();
    if (annotations_.size() >= 2) SortAlongPrimary(labels);
  } else {
    if (mode_ == MinY || mode_ == MaxY || mode_ == CenterY) m_idx = 1;
    if (annotations_.size() < 2) return false;
    CollectPage();
    labels = CollectLabels();
  }
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (!labels[i].callout) continue;
    const dg::DPoint3D& position = labels[i].pixel;
    if (!pageBox_.IsEmpty() && !labelsOutsidePage_) labelsOutsidePage_ = !pageBox_.Contains(Flat(position), 0.0);
    if (i == 0) {
      alignment::StartRange(range_, position[m_idx], position[1 - m_idx]);
      if (!CollectAxis(points)) return false;
    } else {
      alignment::ExtendRange(range_, position[m_idx], position[1 - m_idx]);
    }
  }
  return true;
}

bool Align::CollectAxis(const std::vector<dg::DPoint3D>& points) {
  if (alignment::IsAxisMode(mode_)) {
    axes_ = ProjectAxes(m_ObjToPx);
    return alignment::HasDirection(axes_[alignment::AxisIndex(mode_)]);
  }
  if (mode_ != AlongLine) return true;
  if (points.size() != 2) return false;
  lineStart_ = points[0];
  lineEnd_ = points[1];
  return true;
}

void Align::CollectPage() {
  double scale = 1.0;
  const dg::DBox2D page = hostlayer::PageRectangleOf(view_, scale);
  if (page.IsEmpty()) return;
  pageBox_ = page;
  pageScale_ = scale;
}

// Whatever is no label, or has no place on screen, comes last. Equal places keep their order by their numbers.
void Align::SortAlongPrimary(Labels& labels) {
  std::vector<std::pair<double, std::size_t>> order;
  order.reserve(labels.size());
  for (const Label& label : labels) {
    const double place = label.pixel[m_idx];
    const bool last = !label.callout || std::isnan(place);
    order.emplace_back(last ? std::numeric_limits<double>::infinity() : place, order.size());
  }
  std::sort(order.begin(), order.end());
  Labels sorted;
  sorted.reserve(labels.size());
  Annotations annotations(labels.size());
  for (const auto& [place, index] : order) {
    annotations[sorted.size()].Swap(annotations_[index]);
    sorted.push_back(std::move(labels[index]));
  }
  labels.swap(sorted);
  annotations_.swap(annotations);
}

bool Align::Execute(const std::vector<dg::DPoint3D>& points) {
  slanted_ = false;
  Labels labels;
  if (!CollectData(points, labels)) return false;
  dg::DMat44 pixelToObject = m_ObjToPx;
  pixelToObject.Invert();
  for (std::size_t i = 0; i < labels.size(); ++i) {
    Label& label = labels[i];
    if (!label.callout) continue;
    // Only the very first element classifies the line: when it is no callout, an axis mode moves nothing in this run.
    if (i == 0) Classify();
    label.from = label.pixel * pixelToObject;
    label.to = NewPosition(label.pixel, label.callout, i == 0) * pixelToObject;
  }
  std::erase_if(labels, [](const Label& label) { return !label.callout; });
  Distribute(labels, pixelToObject);
  for (Label& label : labels) {
    dg::DMat44 toFrame = label.frame.FromModel();
    SetPosition(std::move(label.callout), label.from, label.to, toFrame);
  }
  if (operation_) zrk::RecordOperation(operation_);
  return true;
}

// A line that runs vertically or horizontally on screen turns the command into a centring one.
void Align::Classify() {
  if (!alignment::IsAxisMode(mode_) && mode_ != AlongLine) return;
  if (mode_ == AlongLine) {
    lineDirection_ = Flat(lineEnd_ * m_ObjToPx) - Flat(lineStart_ * m_ObjToPx);
  } else {
    lineDirection_ = axes_[alignment::AxisIndex(mode_)];
  }
  slanted_ = alignment::IsSlanted(lineDirection_, mode_, range_, m_idx);
  if (!slanted_) return;
  lineCentre_ = {(range_[0] + range_[1]) / 2, (range_[2] + range_[3]) / 2, 0};
  delete context_;
  context_ = new zrcontext::Context2D;
  pipeline_.SetCamera(view_->GetCamera());
}

dg::DPoint3D Align::NewPosition(const dg::DPoint3D& position, const du::SmartPtr<Callout>& callout, bool isFirst) {
  dg::DPoint3D target = position;
  if (slanted_) return OntoSlantedLine(position, callout);
  if (!alignment::IsSpreadMode(mode_)) {
    target[m_idx] = alignment::AlignedCoordinate(mode_, range_, position[m_idx]);
    return target;
  }
  if (!isFirst) {
    const double gap = position[m_idx] - previous_[m_idx];
    if (gap < spacing_) target[m_idx] = position[m_idx] + (spacing_ - gap);
  }
  previous_ = target;
  return target;
}

dg::DPoint3D Align::OntoSlantedLine(const dg::DPoint3D& position, const du::SmartPtr<Callout>& callout) {
  std::array<dg::DPoint2D, 2> ends;
  const dg::DVec3 direction(lineDirection_.x, lineDirection_.y, 0);
  const dg::DPoint2D foot = GetStartEndPointsOnBoundary(lineCentre_, direction, callout, ends)
                                ? alignment::OntoSegment(Flat(position), ends)
                                : alignment::OntoLine(Flat(position), Flat(lineCentre_), lineDirection_);
  return {foot.x, foot.y, position.z};
}

// The number of places is that of all annotations, also of those that are no callouts.
void Align::Distribute(Labels& labels, const dg::DMat44& pixelToObject) {
  if (!distribute_ || annotations_.size() < 2 || labels.empty()) return;
  for (Label& label : labels) label.pixel = label.to * m_ObjToPx;
  const int other = 1 - m_idx;
  std::stable_sort(labels.begin(), labels.end(), [&](const Label& a, const Label& b) {
    return slanted_ ? alignment::ComesBefore(Flat(a.pixel), Flat(b.pixel)) : a.pixel[other] < b.pixel[other];
  });
  const dg::DPoint2D start = Flat(labels.front().pixel);
  const dg::DPoint2D end = Flat(labels.back().pixel);
  for (std::size_t k = 0; k < labels.size(); ++k) {
    const dg::DPoint3D place = slanted_ ? DistributeDiagonal(k, labels[k].pixel, start, end)
                                        : DistributeHorizOrVert(k, labels[k].pixel, m_idx == 1);
    labels[k].to = place * pixelToObject;
  }
}

dg::DPoint3D Align::DistributeDiagonal(std::size_t index, const dg::DPoint3D& position, const dg::DPoint2D& start,
                                       const dg::DPoint2D& end) {
  const dg::DPoint2D place = alignment::EvenPlace(index, annotations_.size(), Flat(position), start, end);
  return {place.x, place.y, position.z};
}

dg::DPoint3D Align::DistributeHorizOrVert(std::size_t index, const dg::DPoint3D& position, bool horizontal) {
  const double value = alignment::EvenCoordinate(index, annotations_.size(), range_);
  return horizontal ? dg::DPoint3D(value, position.y, position.z) : dg::DPoint3D(position.x, value, position.z);
}

bool Align::GetStartEndPointsOnBoundary(const dg::DPoint3D& point, const dg::DVec3& direction,
                                        const du::SmartPtr<Callout>& callout, std::array<dg::DPoint2D, 2>& result) {
  if (labelsOutsidePage_ || pageBox_.IsEmpty()) return false;
  const dg::DBox label = context_ ? callout->GetMarkupPixelBBox(pipeline_, context_, kLabelBoxFlags) : dg::DBox();
  if (label.IsEmpty()) return false;
  const double margin = pageScale_ * kMarginPerScale;
  const double width = margin + label.GetWidth();
  const double height = margin + label.GetHeight();
  dg::DBox2D box = pageBox_;
  // Against the maximum coordinate, not the extent of the page: an old rule that saved figures depend on.
  if (box.max.x - width > 0) {
    box.min.x += width * 0.5;
    box.max.x -= width * 0.5;
  }
  if (box.max.y - height > 0) {
    box.min.y += height * 0.5;
    box.max.y -= height * 0.5;
  }
  return FindIntersectionPoints(Flat(point), {direction.x, direction.y}, box, result);
}

void Align::Place(const du::SmartPtr<Callout>& callout, const dg::DPoint3D& position) const {
  const bool relative = hostlayer::IsLabelRelativeToScreen(callout);
  callout->SetLabelPosition(position);
  if (relative) callout->SetLabelScreenSpaceMode(view_);
}

// Nothing here asks for memory before the label has moved, so that no command ends between two labels.
void Align::SetPosition(du::SmartPtr<Callout> callout, dg::DPoint3D& from, dg::DPoint3D& to, dg::DMat44& transform) {
  const bool free = hostlayer::IsLabelFreeInModelSpace(callout);
  // A label that stands free in model space is moved by its step alone, so without an operation it stays.
  if (!operation_) {
    if (!free) Place(callout, to * transform);
    return;
  }
  const auto placement = hostlayer::LabelPlacementOf(callout);
  dg::Location fromLocation(dg::FMat33::IDENTITY, free ? from : from * transform);
  dg::Location toLocation(dg::FMat33::IDENTITY, free ? to : to * transform);
  if (!free) {
    const bool relative = hostlayer::IsLabelRelativeToScreen(callout);
    if (relative) fromLocation.SetPos(hostlayer::RelativeScreenPosition(callout));
    Place(callout, to * transform);
    if (relative) toLocation.SetPos(hostlayer::RelativeScreenPosition(callout));
  }
  const du::SmartPtr<zrannotations::MoveOperationStep> step(
      new zrannotations::MoveOperationStep(callout, 0, fromLocation, toLocation, true));
  if (!step) return;
  step->SetPlacementBefore(placement);
  operation_->AddStep(step);
}

}  // namespace zrcallouts
