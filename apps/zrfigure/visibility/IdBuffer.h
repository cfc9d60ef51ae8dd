#pragma once
// Which leaf occurrence each pixel of a view shows. No smoothing: every pixel is decided by one ray through its centre.

#include <cstdint>
#include <vector>

#include "visibility/View.h"

namespace zrfigure {

class VisibilityScene;

/// Row-major image of occurrence indices with their depths.
struct IdBuffer {
  static constexpr std::int32_t kBackground = -1;

  int width = 0;
  int height = 0;
  std::vector<std::int32_t> ids;  ///< Index into Model::occurrences, kBackground where nothing is.
  std::vector<float> depths;      ///< Pixel-space z; +infinity on the background.

  /// Background for a pixel outside the image.
  [[nodiscard]] std::int32_t At(int x, int y) const {
    return x < 0 || y < 0 || x >= width || y >= height ? kBackground : ids[static_cast<std::size_t>(y) * width + x];
  }
};

/// Renders the view. The same scene and view give the same buffer, whatever the number of threads.
[[nodiscard]] IdBuffer RenderIdBuffer(const VisibilityScene& scene, const View& view);

}  // namespace zrfigure
