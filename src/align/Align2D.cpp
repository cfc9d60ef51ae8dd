#include "zrcallouts/Align2D.h"

#include <algorithm>

#include <dg/DBox2D.h>
#include <dg/LengthUnit.h>
#include <zrk/View.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Document2D.h>
#include <zrk/illustration2d/PageBorder2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/View2D.h>
#include <zrservices/illustration2d/OperationHandler.h>

#include "align/AlignGeometry.h"

using zrk::illustration2d::Callout2D;
using zrk::illustration2d::Scene2D;
using zrk::illustration2d::View2D;

namespace zrcallouts {

namespace {

double Millimetres(const zrk::illustration::PenHolder& pen, double value) {
  return dg::LengthUnit::Convert(pen.GetUnit(), dg::LengthUnit::MILLIMETER, value, 1);
}

// What the border pen adds to a label's extents. With a halo the two weights are multiplied: saved sheets depend on it.
double BorderGrowth(const du::SmartPtr<Callout2D>& callout) {
  const auto preset = callout->GetPreset();
  const auto pen = preset ? preset->GetLabelBorderPen() : nullptr;
  if (!pen) return 0;
  const double weight = Millimetres(*pen, pen->GetLineWeight());
  return pen->GetHalo() ? Millimetres(*pen, pen->GetHaloWeight()) * weight : weight;
}

}  // namespace

struct Align2D::Move {
  du::SmartPtr<Callout2D> callout;
  dg::DPoint2D from;
  dg::DPoint2D to;
};

Align2D::Align2D(Callouts2D& callouts, Align_Mode mode, bool distribute, du::SmartPtr<zrk::View> view)
    : callouts_(callouts), mode_(mode), view_(view), distribute_(distribute) {}

Align2D::Align2D(const Align2D& other) = default;

Align2D::Align2D(Align2D&& other) noexcept = default;

Align2D::~Align2D() = default;

bool Align2D::IsAxisAvailable(const du::SmartPtr<zrk::View>& view, Align_Mode mode) {
  if (!view) return false;
  if (!alignment::IsAxisMode(mode)) return true;
  const auto sheet = du::DynamicCast<View2D>(view);
  return sheet && alignment::HasDirection(sheet->GetGridAxes(false)[alignment::AxisIndex(mode)]);
}

bool Align2D::CollectData(const std::vector<dg::DPoint2D>& points) {
  if (!view_) return false;
  primary_ = 0;
  if (callouts_.size() < (distribute_ ? 3u : 2u)) return false;
  CollectPageSize();
  if (mode_ == MinY || mode_ == MaxY || mode_ == CenterY) primary_ = 1;  // SpreadY stays with x on a sheet
  const dg::DBox2D page(dg::DPoint2D(0, 0), dg::DPoint2D(pageSize_.x, pageSize_.y));
  for (std::size_t i = 0; i < callouts_.size(); ++i) {
    if (!callouts_[i]) continue;
    const dg::DPoint2D position = callouts_[i]->GetPosition();
    if (!labelsOutsidePage_) labelsOutsidePage_ = !page.Contains(position, 0.0);
    if (i == 0) {
      alignment::StartRange(range_, position[primary_], position[1 - primary_]);
      if (!CollectAxis(points)) return false;
    } else {
      alignment::ExtendRange(range_, position[primary_], position[1 - primary_]);
    }
  }
  return true;
}

bool Align2D::CollectAxis(const std::vector<dg::DPoint2D>& points) {
  if (alignment::IsAxisMode(mode_)) {
    const auto sheet = du::DynamicCast<View2D>(view_);
    if (!sheet) return false;
    axes_ = sheet->GetGridAxes(false);
    return alignment::HasDirection(axes_[alignment::AxisIndex(mode_)]);
  }
  if (mode_ != AlongLine) return true;
  if (points.size() != 2) return false;
  line_ = {points[0], points[1]};
  return true;
}

void Align2D::CollectPageSize() {
  const auto scene = du::DynamicCast<Scene2D>(view_->GetScene());
  const auto document = scene ? scene->GetDocument2D() : nullptr;
  const auto border = document ? document->GetPageBorder() : nullptr;
  if (border) pageSize_ = border->GetDimensions(dg::LengthUnit::MILLIMETER);
}

bool Align2D::Execute(const std::vector<dg::DPoint2D>& points) {
  slanted_ = false;
  if (!CollectData(points)) return false;
  std::vector<Move> moves;
  for (std::size_t i = 0; i < callouts_.size(); ++i) {
    if (!callouts_[i]) continue;
    if (i == 0) Classify();
    const dg::DPoint2D position = callouts_[i]->GetPosition();
    moves.push_back({callouts_[i], position, NewPosition(position, callouts_[i])});
  }
  Distribute(moves);
  std::vector<zrservices::illustration2d::CalloutPosition> elements;
  for (const Move& move : moves) elements.push_back({move.callout, move.to});
  zrservices::illustration2d::OperationHandler::EditCalloutsPosition(du::DynamicCast<Scene2D>(view_->GetScene()),
                                                                     elements);
  return true;
}

void Align2D::Classify() {
  if (!alignment::IsAxisMode(mode_) && mode_ != AlongLine) return;
  lineDirection_ = mode_ == AlongLine ? line_[1] - line_[0] : axes_[alignment::AxisIndex(mode_)];
  slanted_ = alignment::IsSlanted(lineDirection_, mode_, range_, primary_);
  if (slanted_) lineCentre_ = {(range_[0] + range_[1]) / 2, (range_[2] + range_[3]) / 2};
}

// The spread modes leave every callout where it is: on a sheet only the even distribution moves them.
dg::DPoint2D Align2D::NewPosition(const dg::DPoint2D& position, const du::SmartPtr<Callout2D>& callout) {
  if (slanted_) {
    std::array<dg::DPoint2D, 2> ends;
    return GetStartEndPointsOnBoundary(lineCentre_, lineDirection_, callout, ends)
               ? alignment::OntoSegment(position, ends)
               : alignment::OntoLine(position, lineCentre_, lineDirection_);
  }
  dg::DPoint2D target = position;
  target[primary_] = alignment::AlignedCoordinate(mode_, range_, position[primary_]);
  return target;
}

void Align2D::Distribute(std::vector<Move>& moves) {
  if (!distribute_ || moves.empty()) return;
  const int other = 1 - primary_;
  std::stable_sort(moves.begin(), moves.end(), [&](const Move& a, const Move& b) {
    return slanted_ ? alignment::ComesBefore(a.to, b.to) : a.to[other] < b.to[other];
  });
  const dg::DPoint2D start = moves.front().to;
  const dg::DPoint2D end = moves.back().to;
  for (std::size_t k = 0; k < moves.size(); ++k) {
    moves[k].to = slanted_ ? DistributeDiagonal(k, moves[k].to, start, end)
                           : DistributeHorizOrVert(k, moves[k].to, primary_ == 1);
  }
}

dg::DPoint2D Align2D::DistributeDiagonal(std::size_t index, const dg::DPoint2D& position, const dg::DPoint2D& start,
                                         const dg::DPoint2D& end) {
  return alignment::EvenPlace(index, callouts_.size(), position, start, end);
}

dg::DPoint2D Align2D::DistributeHorizOrVert(std::size_t index, const dg::DPoint2D& position, bool horizontal) {
  const double value = alignment::EvenCoordinate(index, callouts_.size(), range_);
  return horizontal ? dg::DPoint2D(value, position.y) : dg::DPoint2D(position.x, value);
}

bool Align2D::GetStartEndPointsOnBoundary(const dg::DPoint2D& point, const dg::DVec2& direction,
                                          const du::SmartPtr<Callout2D>& callout, std::array<dg::DPoint2D, 2>& result) {
  if (labelsOutsidePage_ || pageSize_.x <= 0 || pageSize_.y <= 0) return false;
  const dg::DBox2D extents = callout->GetShapeExtents();
  const double growth = BorderGrowth(callout);
  const double width = extents.GetWidth() + growth;
  const double height = extents.GetHeight() + growth;
  dg::DBox2D box(dg::DPoint2D(0, 0), dg::DPoint2D(pageSize_.x, pageSize_.y));
  if (pageSize_.x - width > 0) {
    box.min.x = width / 2;
    box.max.x = pageSize_.x - width / 2;
  }
  if (pageSize_.y - height > 0) {
    box.min.y = height / 2;
    box.max.y = pageSize_.y - height / 2;
  }
  return Align::FindIntersectionPoints(point, direction, box, result);
}

}  // namespace zrcallouts
