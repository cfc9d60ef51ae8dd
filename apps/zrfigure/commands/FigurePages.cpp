#include "commands/FigurePages.h"

#include <utility>

#include "commands/FigurePlan.h"
#include "drawing/SvgWriter.h"

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
  figure.page = setup.page;
  if (setup.leaderWeightMm > 0) figure.lineWidths.leader = setup.leaderWeightMm;
  figure.table = std::move(plan.table);
  std::vector<Figure> pages{std::move(figure)};
  for (PartsTable& table : plan.furtherPages) {
    Figure page;
    page.title = setup.title;
    page.page = setup.page;
    page.table = std::move(table);
    pages.push_back(std::move(page));
  }
  return pages;
}

std::vector<std::string> WritePages(Figure figure, const PartsList& list, const PageSetup& setup,
                                    const TextMeasure& text) {
  std::vector<std::string> pages;
  for (const Figure& page : DividePages(std::move(figure), list, setup, text)) pages.push_back(WriteSvg(page));
  return pages;
}

}  // namespace zrfigure
