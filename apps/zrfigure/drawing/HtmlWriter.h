#pragma once
// A figure as one HTML file that works offline: pages, parts list, and a script that ties the two together.

#include <string>
#include <vector>

#include "drawing/Figure.h"

namespace zrfigure {

/// The pages' pictures, cut to what is drawn on them, beside their parts list as a table that can be searched. Pointing
/// at a row lights up its balloons and parts and the reverse; everything works by keyboard too. Pages that hold nothing
/// but the list are left out. Equal figures give equal bytes.
[[nodiscard]] std::string WriteHtml(const std::vector<Figure>& pages);

/// A parts list alone, as a page of the same kind.
[[nodiscard]] std::string WriteHtmlList(const std::string& title, const std::string& language, const PartsTable& list);

}  // namespace zrfigure
