#include "drawing/PageLayout.h"

#include <numeric>

namespace zrfigure {
namespace {

constexpr double kRowHeight = 2.0;   // In cap heights.
constexpr double kMostOfPage = 0.4;  // What a table may take from the drawing.
constexpr double kRounding = 1e-6;
constexpr double kGap = 5 * kPxPerMm;  // Between drawing and table.

std::size_t RowsThatFit(const PartsTable& table, double height) {
  const double rows = std::floor(height / table.rowHeight + 1e-9) - 1;  // One for the header.
  return rows < 1 ? 0 : static_cast<std::size_t>(rows);
}

PartsTable Rows(const PartsTable& table, std::size_t begin, std::size_t end) {
  PartsTable part = table;
  part.rows.assign(table.rows.begin() + static_cast<std::ptrdiff_t>(begin),
                   table.rows.begin() + static_cast<std::ptrdiff_t>(end));
  return part;
}

// Fills whole pages from `begin` on; a page too low for a row takes one all the same.
void AddFurtherPages(const PartsTable& table, std::size_t begin, const Box2& inside, std::vector<PartsTable>& pages) {
  const std::size_t perPage = std::max<std::size_t>(1, RowsThatFit(table, inside.Height()));
  for (; begin < table.rows.size(); begin += perPage) {
    pages.push_back(Rows(table, begin, std::min(begin + perPage, table.rows.size())));
    pages.back().origin = {inside.minX, inside.minY};
  }
}

/// Puts the plan's table where it belongs and takes its room from the drawing.
void PlaceTable(TablePlace place, const Box2& inside, PagePlan& plan) {
  PartsTable& table = *plan.table;
  Box2 beside = inside, above = inside;
  beside.maxX -= table.Width() + kGap;
  above.maxY -= table.Height() + kGap;
  switch (place) {
    case TablePlace::None:
    case TablePlace::OwnPage:
      return;
    case TablePlace::Beside:
      table.origin = {inside.maxX - table.Width(), inside.minY};
      plan.drawingArea = beside;
      return;
    case TablePlace::Under:
      table.origin = {inside.minX, inside.maxY - table.Height()};
      plan.drawingArea = above;
      return;
    case TablePlace::OnDrawing:
      table.rising = true;
      table.origin = {inside.maxX - table.Width(), inside.maxY - table.Height()};
      plan.drawingArea = beside.Width() * beside.Height() >= above.Width() * above.Height() ? beside : above;
      return;
  }
}

std::size_t WidestFlexibleColumn(const PartsTable& table) {
  std::size_t widest = table.columns.size();
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const bool flexible = table.columns[i].align == TextAlign::Left;
    if (flexible && (widest == table.columns.size() || table.columns[i].width > table.columns[widest].width))
      widest = i;
  }
  return widest;
}

}  // namespace

double PartsTable::Width() const {
  return std::accumulate(columns.begin(), columns.end(), 0.0,
                         [](double sum, const TableColumn& c) { return sum + c.width; });
}

double PartsTable::Height() const {
  return rowHeight * static_cast<double>(rows.size() + 1);
}

void MeasureTable(PartsTable& table, const TextMeasure& text, double maxWidth) {
  const double padding = 2 * kCellPadding * text.CapHeight();
  table.letteringHeight = text.CapHeight();
  table.rowHeight = kRowHeight * text.CapHeight();
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    double width = text.Width(table.columns[i].title);
    for (const TableRow& row : table.rows) {
      if (i < row.cells.size()) width = std::max(width, text.Width(row.cells[i]));
    }
    table.columns[i].width = width + padding;
  }
  // Take what is too much from the widest text column, again and again: they end up equally wide.
  const double least = 4 * text.CapHeight();
  while (table.Width() > maxWidth + kRounding) {
    const std::size_t widest = WidestFlexibleColumn(table);
    if (widest == table.columns.size() || table.columns[widest].width <= least) break;
    const double excess = table.Width() - maxWidth;
    table.columns[widest].width = std::max(least, table.columns[widest].width - std::min(excess, text.CapHeight()));
  }
  for (TableRow& row : table.rows) {
    row.cells.resize(table.columns.size());
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      row.cells[i] = text.Shortened(row.cells[i], table.columns[i].width - padding);
    }
  }
}

PagePlan PlanPage(const Page& page, const PartsTable& table, TablePlace place, const TextMeasure& text) {
  PagePlan plan;
  const Box2 inside = page.Inside();
  plan.drawingArea = inside;
  if (place == TablePlace::None || table.rows.empty()) return plan;
  PartsTable measured = table;
  if (place == TablePlace::OwnPage) {
    MeasureTable(measured, text, inside.Width());
    AddFurtherPages(measured, 0, inside, plan.furtherPages);
    return plan;
  }
  const bool under = place == TablePlace::Under;
  MeasureTable(measured, text, under ? inside.Width() : inside.Width() * kMostOfPage);
  const std::size_t fit = RowsThatFit(measured, under ? inside.Height() * kMostOfPage : inside.Height());
  const std::size_t here = std::min(fit, measured.rows.size());
  if (here > 0) plan.table = Rows(measured, 0, here);
  if (here > 0) PlaceTable(place, inside, plan);
  AddFurtherPages(measured, here, inside, plan.furtherPages);
  return plan;
}

}  // namespace zrfigure
