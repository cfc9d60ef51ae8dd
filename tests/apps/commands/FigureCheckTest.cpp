#include "commands/FigureCheck.h"

#include <gtest/gtest.h>

#include "commands/FindingsText.h"

namespace zrfigure {
namespace {

const std::vector<Point2> kSquare{{100, 100}, {200, 100}, {200, 200}, {100, 200}, {100, 100}};

Balloon MakeBalloon(const std::string& item, Box2 box, Point2 anchor) {
  Balloon balloon{"", item, {item}, BalloonShape::Circle, box, {}};
  balloon.id = item;
  balloon.leaders = {{{anchor, box.Centre()}, LeaderEnd::Dot, false, "pump/body"}};
  return balloon;
}

/// Two callouts left of a square part, and their rows.
std::vector<Figure> GoodPages() {
  Figure figure;
  figure.drawings = {{100, 100, 200, 200}};
  figure.parts = {{"pump/body/shell", "1", "", {}, {kSquare}},
                  {"pump/bodyguard", "", "", {}, {{{0, 0}, {1, 0}, {0, 0}}}}};
  figure.balloons = {MakeBalloon("1", {20, 100, 40, 120}, {150, 130}),
                     MakeBalloon("2", {20, 140, 40, 160}, {150, 160})};
  figure.table.emplace();
  figure.table->rows = {{"1", {"1"}}, {"2", {"2"}}};
  return {figure};
}

void AddRow(Figure& figure, const std::string& item, bool shown) {
  figure.table->rows.push_back({item, {item}, shown});
}

/// Where the first leader begins.
Point2& Start(Figure& figure) {
  return figure.balloons[0].leaders[0].points[0];
}

/// Moves the label of the second callout, without its leader, to a box.
void MoveLabel(Figure& figure, Box2 box) {
  figure.balloons[1].box = box;
  figure.balloons[1].leaders.clear();
}

void CrossLeaders(Figure& figure) {
  std::swap(figure.balloons[0].leaders, figure.balloons[1].leaders);
  figure.balloons[0].leaders[0].points[1] = {30, 110};
  figure.balloons[1].leaders[0].points[1] = {30, 150};
}

/// Row 2 has callout 2.1 below it; callout 31 is not below row 3.
void ListAssemblies(Figure& figure) {
  figure.table->rows = {{"1", {"2.1"}}, {"2", {"31"}}, {"3", {"2"}}, {"4", {"3"}}};
  figure.balloons[0].lines = {"2.1"};
  figure.balloons[1].lines = {"31"};
}

TEST(FigureCheckTest, ReportsExactlyTheBreach) {
  struct BreachCase {
    const char* name;
    void (*breakIt)(Figure&);
    const char* expected;  ///< "rule element", empty for none.
  };
  const BreachCase cases[] = {
      {"none", [](Figure&) {}, ""},
      {"no list", [](Figure& f) { f.table.reset(); }, ""},
      {"no areas", [](Figure& f) { f.parts.clear(), Start(f).x = 70; }, ""},
      {"row without callout", [](Figure& f) { AddRow(f, "3", true); }, "item-not-shown row-3"},
      {"row listed as not visible", [](Figure& f) { AddRow(f, "3", false); }, ""},
      {"assembly of what is shown", ListAssemblies, "item-not-shown row-4"},
      {"hidden", [](Figure& f) { f.balloons[1].leaders[0].hidden = true; }, "item-not-shown row-2"},
      {"callout without row", [](Figure& f) { f.table->rows.pop_back(); }, "callout-not-listed callout-2"},
      {"other number", [](Figure& f) { f.balloons[0].lines[0] = "7"; }, "number-differs callout-1"},
      {"text is no number", [](Figure& f) { f.balloons[0].lines[0] = "1 (2x)"; }, ""},
      {"crossing", CrossLeaders, "leaders-cross callout-1"},
      {"overlap",
       [](Figure& f) {
         MoveLabel(f, Box2{25, 90, 45, 105});
       },
       "labels-overlap callout-1"},
      {"leader through label",
       [](Figure& f) {
         MoveLabel(f, Box2{60, 105, 80, 125});
       },
       "leader-through-label callout-1"},
      {"ends beside the part", [](Figure& f) { Start(f).x = 97; }, "leader-off-part callout-1"},
      {"ends on the border", [](Figure& f) { Start(f).x = 99; }, ""},
      {"part of like name", [](Figure& f) { f.balloons[0].leaders[0].partId = "pump/bod"; },
       "leader-off-part callout-1"},
      {"over the drawing", [](Figure& f) { f.balloons[0].box.maxX = 105; }, "label-over-drawing callout-1"},
      {"off the page", [](Figure& f) { f.balloons[1].box.minX = -1; }, "label-off-page callout-2"}};
  for (const BreachCase& breach : cases) {
    std::vector<Figure> pages = GoodPages();
    breach.breakIt(pages[0]);
    std::string found;
    for (const FigureFinding& finding : CheckFigure(pages)) found += finding.rule + " " + finding.element;
    EXPECT_EQ(found, breach.expected) << breach.name;
  }
}

TEST(FindingsTextTest, TextNamesFileElementAndRule) {
  EXPECT_EQ(FindingsText("a.svg", {}, FindingFormat::Text), "a.svg: no findings\n");
  EXPECT_EQ(
      FindingsText("a.svg", {{"labels-overlap", "callout-1", "callout '1' overlaps callout '2'"}}, FindingFormat::Text),
      "a.svg: callout-1: callout '1' overlaps callout '2' [labels-overlap]\na.svg: 1 finding\n");
}

}  // namespace
}  // namespace zrfigure
