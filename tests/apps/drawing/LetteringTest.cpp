#include <gtest/gtest.h>

#include <regex>
#include <tuple>

#include "drawing/BalloonSize.h"
#include "drawing/PageLayout.h"
#include "drawing/Utf8.h"

namespace zrfigure {
namespace {

TEST(TextMeasureTest, WidthsGrowWithTextAndSize) {
  const TextMeasure text(28), large(56);
  EXPECT_EQ(text.Width(""), 0);
  EXPECT_GT(text.Width("12"), 1.5 * text.Width("1"));
  EXPECT_NEAR(large.Width("M8x20"), 2 * text.Width("M8x20"), 1);
  EXPECT_GT(text.Width("a b"), text.Width("ab")) << "spaces count";
  EXPECT_GT(text.Width("<&>"), text.Width("<")) << "markup is text";
  EXPECT_GT(text.Width("\xE6\x97\xA5\xE6\x9C\xAC"), text.CapHeight()) << "characters of another font count";
  EXPECT_GT(text.Width("a\xFF\x01z"), text.Width("az")) << "bad bytes are drawn as replacement characters";
}

TEST(TextMeasureTest, ShortenedFitsAndCutsBetweenCharacters) {
  const TextMeasure text(28);
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
  const std::tuple<const char*, std::string, std::string> cases[] = {{"good", good, good},
                                                                     {"Latin-1", "Gr\xFC\xDF", "Gr??"},
                                                                     {"cut short", "a\xE2\x82", "a??"},
                                                                     {"control", std::string("a\0b\x1B", 4), "a?b?"},
                                                                     {"overlong", "\xC0\xAF\xE0\x80\xAF", "?????"},
                                                                     {"surrogate", "\xED\xA0\x80", "???"},
                                                                     {"beyond Unicode", "\xF4\x90\x80\x80", "????"},
                                                                     {"no character", "\xEF\xBF\xBE", "?"}};
  for (const auto& [name, text, clean] : cases) {
    const std::string expected = std::regex_replace(clean, std::regex("\\?"), "\xEF\xBF\xBD");
    EXPECT_EQ(XmlSafeText(text), expected) << name;
  }
}

TEST(BalloonSizeTest, ShortTextSharesOneCircleAndLongerTextFits) {
  const TextMeasure text(kLetteringHeightMm * kPxPerMm);
  const BalloonSize one = SizeBalloon({"1"}, text), two = SizeBalloon({"28"}, text), none = SizeBalloon({}, text);
  EXPECT_EQ(one.shape, BalloonShape::Circle);
  EXPECT_EQ(one.width, one.height);
  EXPECT_EQ(two.width, one.width);
  EXPECT_EQ(none.width, one.width);
  const BalloonSize wide = SizeBalloon({"12 (4x)"}, text), lines = SizeBalloon({"12", "Hexagon bolt"}, text);
  EXPECT_EQ(wide.shape, BalloonShape::Stadium);
  EXPECT_EQ(wide.height, one.height);
  EXPECT_GT(wide.width, text.Width("12 (4x)") + text.CapHeight());
  EXPECT_NEAR(lines.height, one.height + text.LineHeight(), 1e-9);
  EXPECT_GT(lines.width, text.Width("Hexagon bolt") + text.CapHeight());
}

TEST(BalloonSizeTest, BorderPointsLieOnTheBorderTowardTheAnchor) {
  const Box2 circle{0, 0, 80, 80};
  EXPECT_NEAR(Distance(BorderPoint(BalloonShape::Circle, circle, {400, 300}), {40, 40}), 40, 1e-9);
  const Box2 stadium{0, 0, 200, 80};
  const Point2 right = BorderPoint(BalloonShape::Stadium, stadium, {900, 40}),
               top = BorderPoint(BalloonShape::Stadium, stadium, {100, -500});
  EXPECT_NEAR(Distance(right, {200, 40}), 0, 1e-6);
  EXPECT_NEAR(Distance(top, {100, 0}), 0, 1e-6);
  const Point2 corner = BorderPoint(BalloonShape::Stadium, stadium, {500, 240});
  EXPECT_NEAR(Distance(corner, {200 - CornerRadius(stadium), CornerRadius(stadium)}), CornerRadius(stadium), 1e-6);
  EXPECT_EQ(Distance(BorderPoint(BalloonShape::Circle, circle, {40, 40}), {40, 40}), 0);
}

PartsTable TableOf(std::size_t rows, const std::string& name) {
  PartsTable table;
  table.columns = {{"Item", TextAlign::Centre, 0}, {"Qty", TextAlign::Right, 0}, {"Name", TextAlign::Left, 0}};
  for (std::size_t i = 1; i <= rows; ++i) table.rows.push_back({std::to_string(i), {std::to_string(i), "2", name}});
  return table;
}

TEST(PlanPageTest, PlacesEveryRowOnceAndNothingOverTheDrawing) {
  const std::pair<TablePlace, std::size_t> cases[] = {
      {TablePlace::Beside, 0},  {TablePlace::Beside, 5},    {TablePlace::Beside, 300},    {TablePlace::Under, 5},
      {TablePlace::Under, 100}, {TablePlace::OnDrawing, 5}, {TablePlace::OnDrawing, 100}, {TablePlace::OwnPage, 120}};
  const Page page;
  const Box2 inside = page.Inside();
  for (const auto& [place, rows] : cases) {
    SCOPED_TRACE(std::to_string(static_cast<int>(place)) + ", " + std::to_string(rows) + " rows");
    const PagePlan plan = PlanPage(page, TableOf(rows, "Bracket, left"), place, TextMeasure(20));
    std::vector<PartsTable> tables = plan.furtherPages;
    if (plan.table) tables.insert(tables.begin(), *plan.table);
    std::size_t next = 1;
    for (const PartsTable& table : tables) {
      EXPECT_GE(table.origin.x, inside.minX - 1e-6);
      EXPECT_LE(table.origin.x + table.Width(), inside.maxX + 1e-6);
      EXPECT_LE(table.origin.y + table.Height(), inside.maxY + 1e-6);
      for (const TableRow& row : table.rows) EXPECT_EQ(row.itemId, std::to_string(next++));
    }
    EXPECT_EQ(next, rows + 1);
    EXPECT_GT(plan.drawingArea.Width() * plan.drawingArea.Height(), 0.5 * inside.Width() * inside.Height());
    if (!plan.table) continue;
    EXPECT_TRUE(plan.drawingArea.maxX < plan.table->origin.x || plan.drawingArea.maxY < plan.table->origin.y);
    const double rise = (place == TablePlace::OnDrawing ? 1 : -1) * plan.table->rowHeight;
    EXPECT_NEAR(plan.table->HeaderTop() - plan.table->RowTop(0), rise, 1e-6);
  }
}

TEST(PlanPageTest, LongNamesAreShortenedToTheColumn) {
  const TextMeasure text(20);
  PartsTable table = TableOf(3, std::string(300, 'x'));
  MeasureTable(table, text, 900);
  EXPECT_LE(table.Width(), 900 + 1e-6);
  EXPECT_LE(text.Width(table.rows[0].cells[2]), table.columns[2].width);
  EXPECT_EQ(table.rows[0].cells[0], "1");
}

}  // namespace
}  // namespace zrfigure
