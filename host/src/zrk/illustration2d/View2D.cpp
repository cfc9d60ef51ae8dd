#include <zrk/illustration2d/View2D.h>

namespace zrk::illustration2d {

namespace {

constexpr double kCosine30 = 0.86602540378443865;
constexpr double kSine30 = 0.5;

}  // namespace

View2D::View2D() : axes_{dg::DVec2(kCosine30, kSine30), dg::DVec2(-kCosine30, kSine30), dg::DVec2(0.0, 1.0)} {}

View2D::~View2D() = default;

std::array<dg::DVec2, 3> View2D::GetGridAxes(bool) const {
  const dp::MutexGuard guard(mutex_);
  return axes_;
}

void View2D::SetGridAxes(const std::array<dg::DVec2, 3>& axes) {
  const dp::MutexGuard guard(mutex_);
  axes_ = axes;
}

}  // namespace zrk::illustration2d
