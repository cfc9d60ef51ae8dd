#include <gtest/gtest.h>

#include <regex>
#include <tuple>

#include "drawing/BalloonSize.h"
#include "drawing/PageLayout.h"
#include "drawing/Utf8.h"

namespace zrfigure {
namespace {

TEST(TextMeasureTest, EveryCharacterCountsAndShortenedFits) {
  const TextMeasure text(28), large(56);
  EXPECT_EQ(text.Width(""), 0);
  EXPECT_NEAR(large.Width("M8x20"), 2 * text.Width("M8x20"), 1);
  EXPECT_GT(text.Width("a b"), text.Width("ab")) << "spaces count";
  EXPECT_GT(text.Width("<&>"), text.Width("<")) << "markup is text";
  EXPECT_GT(text.Width("\xE6\x97\xA5\xE6\x9C\xAC"), text.CapHeight()) << "characters of another font count";
  EXPECT_GT(text.Width("a\xFF\x01z"), text.Width("az")) << "bad bytes are drawn as replacement characters";
  const std::string umlauts = "\xC3\x84\xC3\x96\xC3\x9C\xC3\x84\xC3\x96\xC3\x9C\xC3\x84\xC3\x96\xC3\x9C";
  for (double width = text.Width("..."); width < text.Width(umlauts); width += 7) {
    const std::string shortened = text.Shortened(umlauts, width);
    EXPECT_LE(text.Width(shortened), width);
    EXPECT_EQ(XmlSafeText(shortened), shortened) << "no half character";
  }
  EXPECT_EQ(text.Shortened(umlauts, text.Width(umlauts)), umlauts);
  EXPECT_EQ(text.Shortened("long", 0), "...");
}

TEST(XmlSafeTextTest, ReplacesWhatXmlCannotHold) {
  const std::string good = "a\t\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  // Latin-1, cut short, control, overlong, surrogate, beyond Unicode, no character.
  const std::pair<std::string, std::string> cases[] = {{good, good},
                                                       {"Gr\xFC\xDF", "Gr??"},
                                                       {"a\xE2\x82", "a??"},
                                                       {std::string("a\0b\x1B", 4), "a?b?"},
                                                       {"\xC0\xAF\xE0\x80\xAF", "?????"},
                                                       {"\xED\xA0\x80", "???"},
                                                       {"\xF4\x90\x80\x80", "????"},
                                                       {"\xEF\xBF\xBE", "?"}};
  for (const auto& [text, clean] : cases) {
    EXPECT_EQ(XmlSafeText(text), std::regex_replace(clean, std::regex("\\?"), "\xEF\xBF\xBD")) << clean;
  }
}

TEST(BalloonSizeTest, ShortTextSharesOneCircleAndLongerTextFits) {
  const TextMeasure text(kLetteringHeightMm * kPxPerMm);
  const BalloonSize one = SizeBalloon({"1"}, text);
  EXPECT_EQ(std::tuple(one.shape, one.width), std::tuple(BalloonShape::Circle, one.height));
  for (const auto& lines : {std::vector<std::string>{"28"}, {}}) EXPECT_EQ(SizeBalloon(lines, text).width, one.width);
  const BalloonSize wide = SizeBalloon({"12 (4x)"}, text), lines = SizeBalloon({"12", "Hexagon bolt"}, text);
  EXPECT_EQ(std::tuple(wide.shape, wide.height), std::tuple(BalloonShape::Stadium, one.height));
  EXPECT_GT(wide.width, text.Width("12 (4x)") + text.CapHeight());
  EXPECT_NEAR(lines.height, one.height + text.LineHeight(), 1e-9);
  EXPECT_GT(lines.width, text.Width("Hexagon bolt") + text.CapHeight());
}

TEST(BalloonSizeTest, BorderPointsLieOnTheBorderTowardTheAnchor) {
  const Box2 circle{0, 0, 80, 80}, stadium{0, 0, 200, 80};
  EXPECT_NEAR(Distance(BorderPoint(BalloonShape::Circle, circle, {400, 300}), {40, 40}), 40, 1e-9);
  EXPECT_EQ(Distance(BorderPoint(BalloonShape::Circle, circle, {40, 40}), {40, 40}), 0);
  const auto border = [&](Point2 anchor) { return BorderPoint(BalloonShape::Stadium, stadium, anchor); };
  EXPECT_NEAR(Distance(border({900, 40}), {200, 40}), 0, 1e-6);
  EXPECT_NEAR(Distance(border({100, -500}), {100, 0}), 0, 1e-6);
  const double radius = CornerRadius(stadium);
  EXPECT_NEAR(Distance(border({500, 240}), {200 - radius, radius}), radius, 1e-6);
}

PartsTable TableOf(std::size_t rows) {
  PartsTable table;
  table.columns = {{"Item", TextAlign::Centre, 0}, {"Qty", TextAlign::Right, 0}, {"Name", TextAlign::Left, 0}};
  for (std::size_t i = 1; i <= rows; ++i)
    table.rows.push_back({std::to_string(i), {std::to_string(i), "2", std::string(300, 'x')}});
  return table;
}

TEST(PlanPageTest, PlacesEveryRowOnceAndNothingOverTheDrawing) {
  using enum TablePlace;
  const std::pair<TablePlace, std::size_t> cases[] = {{Beside, 0},  {Beside, 5},    {Beside, 300},    {Under, 5},
                                                      {Under, 100}, {OnDrawing, 5}, {OnDrawing, 100}, {OwnPage, 120}};
  const Box2 inside = Page().Inside();
  const TextMeasure text(20);
  for (const auto& [place, rows] : cases) {
    SCOPED_TRACE(std::to_string(static_cast<int>(place)) + ", " + std::to_string(rows) + " rows");
    const PagePlan plan = PlanPage(Page(), TableOf(rows), place, text);
    std::vector<PartsTable> tables = plan.furtherPages;
    if (plan.table) tables.insert(tables.begin(), *plan.table);
    std::size_t next = 1;
    for (const PartsTable& table : tables) {
      EXPECT_GE(table.origin.x, inside.minX - 1e-6);
      EXPECT_LE(table.origin.x + table.Width(), inside.maxX + 1e-6);
      EXPECT_LE(table.origin.y + table.Height(), inside.maxY + 1e-6);
      for (const TableRow& row : table.rows) {
        EXPECT_EQ(row.itemId, std::to_string(next++));
        EXPECT_LE(text.Width(row.cells[2]), table.columns[2].width) << "long names are shortened";
      }
    }
    EXPECT_EQ(next, rows + 1);
    EXPECT_GT(plan.drawingArea.Width() * plan.drawingArea.Height(), 0.5 * inside.Width() * inside.Height());
    if (!plan.table) continue;
    EXPECT_TRUE(plan.drawingArea.maxX < plan.table->origin.x || plan.drawingArea.maxY < plan.table->origin.y);
    const double rise = (place == OnDrawing ? 1 : -1) * plan.table->rowHeight;
    EXPECT_NEAR(plan.table->HeaderTop() - plan.table->RowTop(0), rise, 1e-6);
  }
}

}  // namespace
}  // namespace zrfigure
