#pragma once
// From a composed figure and its parts list to the pages of a document.

#include <optional>
#include <string>
#include <vector>

#include "commands/HostSession.h"
#include "commands/RowPlan.h"
#include "drawing/Figure.h"
#include "drawing/PageLayout.h"
#include "drawing/PartsList.h"
#include "drawing/TextMeasure.h"

namespace zrfigure {

/// The items that planned rows will yield, for dividing the page before there are any.
[[nodiscard]] std::vector<ItemState> PlannedItems(const std::vector<PlannedRow>& rows);

/// What all pages of a document have in common.
struct PageSetup {
  std::string title;
  Page page;
  std::string language;
  double leaderWeightMm = 0;                           ///< 0: the usual one.
  std::optional<TablePlace> listPlace = std::nullopt;  ///< None: as the page lies or stands.
};

/// The figure with as much of the parts list as its place has room for, then pages with the rest.
[[nodiscard]] std::vector<Figure> DividePages(Figure figure, const PartsList& list, const PageSetup& setup,
                                              const TextMeasure& text);

}  // namespace zrfigure
