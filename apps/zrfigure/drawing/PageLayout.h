#pragma once
// Divides a page between the drawing and its parts list.

#include "drawing/Figure.h"
#include "drawing/TextMeasure.h"

namespace zrfigure {

enum class TablePlace {
  None,
  Beside,
  Under,
  OnDrawing,  ///< In the lower right corner, rows rising from the headings.
  OwnPage
};

struct PagePlan {
  Box2 drawingArea;                      ///< What is left for model and balloons, page pixels.
  std::optional<PartsTable> table;       ///< The part of the table that stands on the figure's page.
  std::vector<PartsTable> furtherPages;  ///< The rest, a table a page of the same size; in reading order.
};

/// Sets row height and column widths to fit the text; the widest left-aligned columns shrink when `maxWidth` is too
/// narrow, narrow, and cells that still do not fit are shortened with three dots.
void MeasureTable(PartsTable& table, const TextMeasure& text, double maxWidth);

/// Places the table. On the figure's page it gets at most 40 % of the width or height; what does not fit goes to
/// further pages. A table on the drawing leaves the larger of what is above it and what is beside it.
[[nodiscard]] PagePlan PlanPage(const Page& page, const PartsTable& table, TablePlace place, const TextMeasure& text);

}  // namespace zrfigure
