#pragma once
// A written figure back as plain values: what is needed to check it, to link it and to keep its labels in place.

#include <optional>
#include <string>

#include "drawing/Figure.h"

namespace zrfigure {

/// Reads what WriteSvg() wrote: page, boxes of the pictures, areas of parts, balloons with their leaders, rows of the
/// parts list. Lines of parts and shapes of balloons are left out; the table has one column as wide as the whole.
/// \return nothing with one line in `error` for anything else than such a figure.
[[nodiscard]] std::optional<Figure> ReadSvg(const std::string& svg, std::string& error);

}  // namespace zrfigure
