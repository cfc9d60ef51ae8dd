#include "commands/FigureCheck.h"

#include <functional>

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

struct BreachCase {
  const char* name;
  std::function<void(Figure&)> breakIt;
  std::vector<std::string> expected;  ///< "rule element".
};

class FigureCheckTest : public testing::TestWithParam<BreachCase> {};

TEST_P(FigureCheckTest, ReportsExactlyTheBreach) {
  std::vector<Figure> pages = GoodPages();
  GetParam().breakIt(pages[0]);
  std::vector<std::string> found;
  for (const FigureFinding& finding : CheckFigure(pages)) found.push_back(finding.rule + " " + finding.element);
  EXPECT_EQ(found, GetParam().expected);
}

using Names = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(
    Breaches, FigureCheckTest,
    testing::Values(
        BreachCase{"None", [](Figure&) {}, {}}, BreachCase{"NoList", [](Figure& f) { f.table.reset(); }, {}},
        BreachCase{"NoAreas",
                   [](Figure& f) {
                     f.parts.clear();
                     f.balloons[0].leaders[0].points[0] = {70, 110};
                   },
                   {}},
        BreachCase{"RowWithoutCallout",
                   [](Figure& f) {
                     f.table->rows.push_back({"3", {"3"}});
                   },
                   Names{"item-not-shown row-3"}},
        BreachCase{"RowListedAsNotVisible",
                   [](Figure& f) {
                     f.table->rows.push_back({"3", {"3"}, false});
                   },
                   {}},
        BreachCase{"AssemblyOfWhatIsShown",
                   [](Figure& f) {
                     f.table->rows = {{"1", {"2.1"}}, {"2", {"31"}}, {"3", {"2"}}, {"4", {"3"}}};
                     f.balloons[0].lines = {"2.1"};
                     f.balloons[1].lines = {"31"};
                   },
                   Names{"item-not-shown row-4"}},
        BreachCase{"HiddenButNotListedAsSuch", [](Figure& f) { f.balloons[1].leaders[0].hidden = true; },
                   Names{"item-not-shown row-2"}},
        BreachCase{"CalloutWithoutRow", [](Figure& f) { f.table->rows.pop_back(); },
                   Names{"callout-not-listed callout-2"}},
        BreachCase{"OtherNumber", [](Figure& f) { f.balloons[0].lines = {"7"}; }, Names{"number-differs callout-1"}},
        BreachCase{"TextIsNoNumber", [](Figure& f) { f.balloons[0].lines = {"1 (2x)"}; }, {}},
        BreachCase{"Crossing",
                   [](Figure& f) {
                     std::swap(f.balloons[0].leaders, f.balloons[1].leaders);
                     f.balloons[0].leaders[0].points[1] = {30, 110};
                     f.balloons[1].leaders[0].points[1] = {30, 150};
                   },
                   Names{"leaders-cross callout-1"}},
        BreachCase{"Overlap",
                   [](Figure& f) {
                     f.balloons[1].box = {25, 110, 45, 121};
                     f.balloons[1].leaders.clear();
                     f.balloons[0].leaders.clear();
                   },
                   Names{"labels-overlap callout-1"}},
        BreachCase{"LeaderThroughLabel",
                   [](Figure& f) {
                     f.balloons[1].box = {60, 105, 80, 125};
                     f.balloons[1].leaders.clear();
                   },
                   Names{"leader-through-label callout-1"}},
        BreachCase{"EndsBesideThePart",
                   [](Figure& f) {
                     f.balloons[0].leaders[0].points[0] = {97, 130};
                   },
                   Names{"leader-off-part callout-1"}},
        BreachCase{"EndsOnTheBorder",
                   [](Figure& f) {
                     f.balloons[0].leaders[0].points[0] = {99, 130};
                   },
                   {}},
        BreachCase{"PartOfLikeName", [](Figure& f) { f.balloons[0].leaders[0].partId = "pump/bod"; },
                   Names{"leader-off-part callout-1"}},
        BreachCase{"OverTheDrawing", [](Figure& f) { f.balloons[0].box.maxX = 105; },
                   Names{"label-over-drawing callout-1"}},
        BreachCase{"OffThePage", [](Figure& f) { f.balloons[1].box.minX = -1; }, Names{"label-off-page callout-2"}}),
    [](const auto& entry) { return entry.param.name; });

TEST(FindingsTextTest, TextNamesFileElementAndRule) {
  EXPECT_EQ(FindingsText("a.svg", {}, FindingFormat::Text), "a.svg: no findings\n");
  EXPECT_EQ(
      FindingsText("a.svg", {{"labels-overlap", "callout-1", "callout '1' overlaps callout '2'"}}, FindingFormat::Text),
      "a.svg: callout-1: callout '1' overlaps callout '2' [labels-overlap]\na.svg: 1 finding\n");
}

}  // namespace
}  // namespace zrfigure
