#pragma once
// Removes the short stray lines that coarse or twisted facets leave in a drawing.

#include <vector>

#include "drawing/LineArt.h"

namespace zrfigure {

/// A visible line of one occurrence and where it came from.
struct CandidateLine {
  ArtLine line;
  bool contour = false;  ///< A silhouette of curved surface; else a sharp edge.
};

/// Drops lines under 8 px of one occurrence that nothing holds: a silhouette unless both its ends are held, a sharp
/// edge unless it is joined, directly or through other short edges, to a longer line. Another occurrence that cuts a
/// line off holds that end. An occurrence that consists of short edges only keeps them. The order of the others stays.
void DropTicks(std::vector<CandidateLine>& lines, const IdBuffer& ids);

}  // namespace zrfigure
