#pragma once
// Borders of what each occurrence shows, for pointing at parts in a viewer.

#include <map>
#include <vector>

#include "visibility/IdBuffer.h"

namespace zrfigure {

/// Closed rings (first point equals last) round the visible pixels of every occurrence, holes included, to be filled
/// even-odd. They follow the pixel borders within a pixel. Occurrences without a pixel have no entry.
[[nodiscard]] std::map<int, std::vector<std::vector<Point2>>> TraceVisibleAreas(const IdBuffer& buffer);

}  // namespace zrfigure
