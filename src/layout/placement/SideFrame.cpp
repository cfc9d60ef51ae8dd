#include "layout/placement/SideFrame.h"

#include <algorithm>

namespace zrcallouts::placement {

SidePoint SideFrame::ToSide(FixedPoint point) const {
  switch (side_) {
    case Side::Top:
      return {point.x, frame_.top - point.y};
    case Side::Right:
      return {point.y, point.x - frame_.right};
    case Side::Bottom:
      return {point.x, point.y - frame_.bottom};
    case Side::Left:
      return {point.y, frame_.left - point.x};
  }
  return {};
}

FixedPoint SideFrame::ToPage(SidePoint point) const {
  switch (side_) {
    case Side::Top:
      return {point.u, frame_.top - point.v};
    case Side::Right:
      return {frame_.right + point.v, point.u};
    case Side::Bottom:
      return {point.u, frame_.bottom + point.v};
    case Side::Left:
      return {frame_.left - point.v, point.u};
  }
  return {};
}

FixedBox SideFrame::ToPage(SidePoint low, SidePoint high) const {
  const FixedPoint a = ToPage(low), b = ToPage(high);
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

std::pair<SidePoint, SidePoint> SideFrame::ToSide(const FixedBox& box) const {
  const SidePoint a = ToSide(FixedPoint{box.left, box.top}), b = ToSide(FixedPoint{box.right, box.bottom});
  return {{std::min(a.u, b.u), std::min(a.v, b.v)}, {std::max(a.u, b.u), std::max(a.v, b.v)}};
}

}  // namespace zrcallouts::placement
