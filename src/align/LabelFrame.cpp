#include "align/LabelFrame.h"

#include <dg/Location.h>
#include <zrannotations/Callout.h>

#include <cmath>

#include "hostlayer/HostLayer.h"

namespace zrcallouts {

namespace {

bool IsFinite(const dg::DPoint3D& point) {
  return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

}  // namespace

LabelFrame LabelFrameOf(const du::SmartPtr<zrannotations::Callout>& callout) {
  if (!callout || hostlayer::IsLabelFreeInModelSpace(callout)) return {};
  const dg::Location instance = callout->GetInstanceLocationAtPos(0, false);
  return {instance.GetPos(), instance.GetScale()};
}

// Scaling and shifting only, so the inverse is written down instead of eliminated.
dg::DMat44 LabelFrame::FromModel() const {
  dg::DMat44 toFrame;
  // A frame without an inverse is used as it is.
  const bool invertible = scale != 0 && std::isfinite(scale) && IsFinite(origin);
  for (int i = 0; i < 3; ++i) {
    toFrame.m[i][i] = invertible ? 1 / scale : scale;
    toFrame.m[3][i] = invertible ? -origin[i] / scale : origin[i];
  }
  return toFrame;
}

}  // namespace zrcallouts
