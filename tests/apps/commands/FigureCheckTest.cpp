#include "commands/FigureCheck.h"

#include <tuple>

#include <gtest/gtest.h>

#include "commands/FindingsText.h"
#include "commands/LayoutCheck.h"

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

/// Where the first leader begins.
Point2& Start(Figure& figure) {
  return figure.balloons[0].leaders[0].points[0];
}

void AddRow(Figure& figure, bool shown) {
  figure.table->rows.push_back({"3", {"3"}, shown});
}

/// Row 2 has callout 2.1 below it; callout 31 is not below row 3.
void ListAssemblies(Figure& figure) {
  figure.table->rows = {{"1", {"2.1"}}, {"2", {"31"}}, {"3", {"2"}}, {"4", {"3"}}};
  figure.balloons[0].lines = {"2.1"};
  figure.balloons[1].lines = {"31"};
}

TEST(FigureCheckTest, ReportsExactlyTheBreach) {
  // What is done to the figure, and "rule element" of the finding.
  const std::tuple<const char*, void (*)(Figure&), const char*> cases[] = {
      {"none", [](Figure&) {}, ""},
      {"no list", [](Figure& f) { f.table.reset(); }, ""},
      {"no areas", [](Figure& f) { f.parts.clear(), Start(f).x = 70; }, ""},
      {"row without callout", [](Figure& f) { AddRow(f, true); }, "item-not-shown row-3"},
      {"row listed as not visible", [](Figure& f) { AddRow(f, false); }, ""},
      {"assembly of what is shown", ListAssemblies, "item-not-shown row-4"},
      {"hidden", [](Figure& f) { f.balloons[1].leaders[0].hidden = true; }, "item-not-shown row-2"},
      {"callout without row", [](Figure& f) { f.table->rows.pop_back(); }, "callout-not-listed callout-2"},
      {"other number", [](Figure& f) { f.balloons[0].lines[0] = "7"; }, "number-differs callout-1"},
      {"text is no number", [](Figure& f) { f.balloons[0].lines[0] = "1 (2x)"; }, ""},
      {"crossing", [](Figure& f) { std::swap(Start(f), f.balloons[1].leaders[0].points[0]); },
       "leaders-cross callout-1"},
      {"ends beside the part", [](Figure& f) { Start(f).x = 97; }, "leader-off-part callout-1"},
      {"ends on the border", [](Figure& f) { Start(f).x = 99; }, ""},
      {"part of like name", [](Figure& f) { f.balloons[0].leaders[0].partId = "pump/bod"; },
       "leader-off-part callout-1"},
      {"over the drawing", [](Figure& f) { f.balloons[0].box.maxX = 105; }, "label-over-drawing callout-1"},
      {"off the page", [](Figure& f) { f.balloons[1].box.minX = -1; }, "label-off-page callout-2"}};
  for (const auto& [name, breakIt, expected] : cases) {
    std::vector<Figure> pages = GoodPages();
    breakIt(pages[0]);
    std::string found;
    for (const FigureFinding& finding : CheckFigure(pages)) found += finding.rule + " " + finding.element;
    EXPECT_EQ(found, expected) << name;
  }
}

Balloon At(Box2 box, std::vector<Point2> leader = {}) {
  Balloon balloon;
  balloon.box = box;
  if (!leader.empty()) balloon.leaders = {{std::move(leader), LeaderEnd::Dot, false, ""}};
  return balloon;
}

TEST(LayoutCheckTest, CountsWhatIsThere) {
  const Box2 top{0, 0, 20, 20}, below{0, 40, 20, 60};
  const Point2 topEnd{20, 10}, belowEnd{20, 50};
  // Crossings, overlaps, labels over the model.
  const std::tuple<const char*, std::vector<Balloon>, std::array<int, 3>> cases[] = {
      {"tidy", {At(top, {{150, 150}, topEnd}), At(below, {{150, 160}, belowEnd})}, {}},
      {"crossing", {At(top, {{150, 160}, topEnd}), At(below, {{150, 120}, belowEnd})}, {1}},
      {"in the second leg", {At(top, {{150, 150}, {90, 30}, topEnd}), At(below, {{50, 0}, belowEnd})}, {1}},
      {"shared anchor is fine", {At(top, {{150, 150}, topEnd}), At(below, {{150, 150}, belowEnd})}, {}},
      {"one over the other",
       {At(top, {{150, 10}, topEnd}), At({30, 40, 50, 60}, {{150, 10}, {40, 10}, {40, 40}})},
       {1}},
      {"anchor on the other", {At(top, {{150, 10}, topEnd}), At({90, 40, 110, 60}, {{100, 10}, {100, 40}})}, {1}},
      {"labels overlap", {At(top), At({10, 10, 30, 30})}, {0, 1}},
      {"labels touch", {At(top), At({20, 0, 40, 20})}, {}},
      {"leader through a label", {At(top, {{10, 150}, {10, 20}}), At(below)}, {0, 1}},
      {"over the model", {At({190, 150, 230, 170})}, {0, 0, 1}},
      {"beside the model", {At({200, 150, 230, 170})}, {}}};
  for (const auto& [name, balloons, expected] : cases) {
    const LayoutFaults faults = CountLayoutFaults(balloons, {{100, 100, 200, 200}});
    EXPECT_EQ((std::array{faults.leaderCrossings, faults.labelOverlaps, faults.labelsOverModel}), expected) << name;
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
