#pragma once
// Candidate lines of a part before hidden ones are removed: chains of segments that know the surfaces beside them.

#include <array>
#include <vector>

#include "visibility/VectorMath.h"

namespace zrfigure {

/// A straight piece of a candidate line in part coordinates. `normals` are the outward normals of the surfaces that
/// meet at it, at its start and at its end.
struct LineSegment {
  std::array<Vec3, 2> ends;
  std::array<std::array<Vec3, 2>, 2> normals;  ///< [surface][end]
  int surfaces = 0;                            ///< How many entries of `normals` are set: 0, 1 or 2.
  double bulge = 0;  ///< How far (mm) the facets near it may stand out from the true surface; contours only.

  void Reverse();
};

struct LineChain {
  std::vector<LineSegment> segments;  ///< End of one is the start of the next.
  bool contour = false;               ///< A silhouette of curved surface; else a sharp edge.
};

/// Joins segments that share an end point, bit for bit, into chains as long as possible; a point where more than two
/// meet ends a chain. Order and direction follow the input only.
[[nodiscard]] std::vector<LineChain> JoinSegments(std::vector<LineSegment> segments, bool contour);

}  // namespace zrfigure
