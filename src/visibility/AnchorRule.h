#pragma once
// Where a leader's anchor goes when a view answers what can be seen of its part.

#include <optional>

#include <dg/DPoint3D.h>
#include <zrk/PickAnswer.h>

namespace zrcallouts {

[[nodiscard]] inline bool IsSamePoint(const dg::DPoint3D& left, const dg::DPoint3D& right) {
  return left.x == right.x && left.y == right.y && left.z == right.z;
}

/// The anchor to take up; empty when the leader keeps the one it has. For an answer that shows something of the part.
/// Anchors do not jump where they need not: one that can be seen stays while it is at least 0.7 times as far from
/// everything else as the best point; one that slipped behind its own part comes forward at the same pixel on those
/// terms.
[[nodiscard]] inline std::optional<dg::DPoint3D> MoveAnchor(const zrk::PickAnswer& answer) {
  constexpr double kGoodEnough = 0.7;
  const bool good = answer.clearanceAtPixel >= kGoodEnough * answer.clearance;
  switch (answer.place) {
    case zrk::PickAnswer::Place::SamePoint:
      if (good) return std::nullopt;
      break;
    case zrk::PickAnswer::Place::OtherPoint:
      if (good) return answer.atPixel;
      break;
    case zrk::PickAnswer::Place::Elsewhere:
      break;
  }
  return answer.deepest;
}

}  // namespace zrcallouts
