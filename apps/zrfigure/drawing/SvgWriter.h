#pragma once
// Figure to SVG. Ids: `part-<id>`, `callout-<id>`, `leader-<id>-<n>` (n from 1), `row-<item>`; each carries
// `data-item`. Leaders carry `data-part`, rows of what is not to be seen `data-shown="no"`, and the group `drawing` has
// the boxes of the pictures in `data-boxes`: left, top, right and bottom of each.

#include <string>

#include "drawing/Figure.h"

namespace zrfigure {

/// The SVG document: page size in millimetres, user units of 1/kPxPerMm mm. The same figure gives the same bytes in
/// every locale. Characters that XML does not allow are replaced by U+FFFD.
[[nodiscard]] std::string WriteSvg(const Figure& figure);

}  // namespace zrfigure
