#pragma once
// Which line group of the drawing standards suits a drawing.

#include "drawing/Figure.h"
#include "visibility/VisibleRegions.h"

namespace zrfigure {

/// The widest of the groups 0.5, 0.35 and 0.25 mm whose lines cover no more than about a sixth of the model's picture,
/// so that crowded drawings do not turn black. \param lines, regions in page pixels, of the same view.
[[nodiscard]] LineWidths SuitableLineWidths(const std::vector<ArtLine>& lines,
                                            const std::vector<VisibleRegion>& regions);

}  // namespace zrfigure
