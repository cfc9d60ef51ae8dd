#include "commands/FigurePages.h"

#include <utility>

#include "commands/FigurePlan.h"

namespace zrfigure {

std::vector<ItemState> PlannedItems(const std::vector<PlannedRow>& rows) {
  std::vector<ItemState> items;
  for (const PlannedRow& row : rows) {
    ItemState item;
    item.id = static_cast<unsigned>(items.size() + 1);
    item.number = JoinPath(row.path);
    item.quantity = static_cast<unsigned>(row.occurrences.size());
    item.occurrences = row.occurrences;
    items.push_back(std::move(item));
  }
  return items;
}

std::vector<Figure> DividePages(Figure figure, const PartsList& list, const PageSetup& setup, const TextMeasure& text) {
  PagePlan plan = PlanPageWithList(setup.page, list, setup.language, text, setup.listPlace);
  figure.title = setup.title;
  figure.language = setup.language;
  figure.page = setup.page;
  if (setup.leaderWeightMm > 0) figure.lineWidths.leader = setup.leaderWeightMm;
  figure.table = std::move(plan.table);
  std::vector<Figure> pages{std::move(figure)};
  for (PartsTable& table : plan.furtherPages) {
    Figure page;
    page.title = setup.title;
    page.language = setup.language;
    page.page = setup.page;
    page.table = std::move(table);
    pages.push_back(std::move(page));
  }
  return pages;
}

}  // namespace zrfigure
