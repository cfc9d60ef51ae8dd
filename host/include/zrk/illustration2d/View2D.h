#pragma once

#include <array>

#include <dg/DVec2.h>
#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <zrk/View.h>

namespace zrk::illustration2d {

/// A view of a sheet with a drawing grid. [any-thread]
class ZR_HOST_API View2D final : public View {
public:
  /// With an isometric grid.
  View2D();
  ~View2D() override;

  /// Directions of the grid's X, Y and Z axis on the sheet; `flag` is ignored.
  [[nodiscard]] std::array<dg::DVec2, 3> GetGridAxes(bool flag) const;
  void SetGridAxes(const std::array<dg::DVec2, 3>& axes);

private:
  mutable dp::Mutex mutex_;
  std::array<dg::DVec2, 3> axes_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk::illustration2d
