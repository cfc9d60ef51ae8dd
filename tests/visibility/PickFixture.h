#pragma once
// A scene seen along z by a parallel camera, and a service that keeps picks until the test answers them.

#include <dg/FMat33.h>
#include <dg/Location.h>
#include <zrk/MakeObject.h>

#include "support/HeldPicks.h"
#include "support/SceneFixture.h"

namespace zrtest {

inline dg::DPoint3D PositionOf(const zrk::ShapeInstance& shape) {
  return shape.GetLocation().GetPos();
}

/// An answer that shows the shape, deepest `above` its position.
inline zrk::PickAnswer SeenAnswer(const zrk::ShapeInstance& shape, double above) {
  zrk::PickAnswer answer;
  answer.isVisible = true;
  answer.clearance = 1;
  answer.deepest = PositionOf(shape);
  answer.deepest.z += above;
  return answer;
}

class PickFixture : public SceneFixture {
protected:
  explicit PickFixture(const SceneOptions& options = {}) : SceneFixture(options) { LookAlong({0, 0, -1}); }

  /// 10 pixels a unit, the origin in the middle of a window of 400 x 400.
  void LookAlong(const dg::DVec3& direction) const {
    dg::Camera3D camera;
    camera.SetParallel({0, 0, 0}, direction, {0, 1, 0}, 10, 400, 400);
    view_->SetCamera(camera);
    view_->SetWindowSize(400, 400);
  }
  [[nodiscard]] du::SmartPtr<HeldPicks> HoldPicks() const {
    auto picks = zrk::MakeObject<HeldPicks>();
    view_->SetPickService(picks);
    return picks;
  }
  static void Move(const Part& part, const dg::DPoint3D& to) {
    part.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, to));
  }
};

}  // namespace zrtest
