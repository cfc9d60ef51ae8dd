#pragma once
// How much of each occurrence a view shows, and where a leader can stand in it.

#include <optional>
#include <vector>

#include "visibility/IdBuffer.h"

namespace zrfigure {

/// The visible pixels of one occurrence.
struct VisibleRegion {
  int occurrence = -1;
  std::int64_t pixelCount = 0;
  int x = 0,
      y = 0;  ///< The deepest pixel: farthest from any pixel of another occurrence, the background or the border.
  double clearancePx = 0;  ///< Distance from its centre to the centre of the nearest foreign pixel.
  Vec3 worldPoint;         ///< The point of the surface shown at that pixel's centre.
};

/// Regions of all visible occurrences, ascending by occurrence. An occurrence without a pixel has no entry.
/// Equal depths are decided by the distance to the centroid of the region's pixels, then the smaller y, then the
/// smaller x.
[[nodiscard]] std::vector<VisibleRegion> FindVisibleRegions(const IdBuffer& buffer, const View& view);

/// The entry of an occurrence in what FindVisibleRegions() returned; null when it is not visible.
[[nodiscard]] const VisibleRegion* FindRegion(const std::vector<VisibleRegion>& regions, int occurrence);

}  // namespace zrfigure
