#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <numbers>
#include <sstream>
#include <tuple>

#include "drawing/LineSmoothing.h"
#include "drawing/LineTicks.h"
#include "drawing/SvgPath.h"

namespace zrfigure {
namespace {

std::vector<Point2> Arc(double radius, double from, double to, int chords) {
  std::vector<Point2> points;
  for (int i = 0; i <= chords; ++i) {
    const double angle = (from + (to - from) * i / chords) * std::numbers::pi / 180;
    points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
  }
  return points;
}

TEST(LineSmoothingTest, SimplifiedStaysWithinTheTolerance) {
  const std::vector<Point2> fine = Arc(100, 0, 180, 400), coarse = Simplified(fine, 0.1);
  EXPECT_LT(coarse.size(), 80U);
  for (const Point2 p : fine) {
    double nearest = 1e9;
    for (std::size_t i = 1; i < coarse.size(); ++i) {
      nearest = std::min(nearest, DistanceToSegment(p, coarse[i - 1], coarse[i]));
    }
    EXPECT_LE(nearest, 0.1);
  }
}

TEST(LineSmoothingTest, SmoothedTakesOutWigglesButNeitherShrinksNorMovesEnds) {
  std::vector<Point2> wiggly = Arc(80, 0, 270, 400);
  for (std::size_t i = 1; i + 1 < wiggly.size(); ++i) wiggly[i] = wiggly[i] * (i % 4 < 2 ? 1.012 : 0.988);
  const std::vector<Point2> smooth = Smoothed(wiggly);
  EXPECT_EQ(Distance(smooth.front(), wiggly.front()), 0);
  EXPECT_EQ(Distance(smooth.back(), wiggly.back()), 0);
  for (const Point2 p : smooth) EXPECT_NEAR(std::hypot(p.x, p.y), 80, 0.6);
  for (const Point2 p : Smoothed(Arc(30, 0, 360, 60))) EXPECT_NEAR(std::hypot(p.x, p.y), 30, 0.3);
  EXPECT_EQ(Smoothed({{0, 0}, {4, 0}, {4, 3}}).size(), 3U) << "too short to be smoothed";
}

CandidateLine Edge(std::vector<Point2> points) {
  return {{1, LineClass::Edge, std::move(points)}, false};
}

CandidateLine Contour(std::vector<Point2> points) {
  return {{1, LineClass::Edge, std::move(points)}, true};
}

TEST(LineTicksTest, DropTicksKeepsWhatIsHeld) {
  // The left half of the picture shows occurrence 1, the right half another one.
  IdBuffer ids{100, 100, std::vector<std::int32_t>(10000, 1), {}};
  for (int i = 0; i < 10000; ++i) ids.ids[i] = i % 100 < 50 ? 1 : 2;
  const CandidateLine wall = Edge({{10, 10}, {10, 40}});
  const std::tuple<const char*, std::vector<CandidateLine>, std::size_t> cases[] = {
      {"lone silhouette", {wall, Contour({{20, 20}, {24, 20}})}, 1},
      {"silhouette held at one end", {wall, Contour({{11, 20}, {15, 20}})}, 1},
      {"between two edges", {wall, Edge({{16, 10}, {16, 40}}), Contour({{11, 20}, {15, 20}})}, 3},
      {"from edge to cover", {Edge({{45, 10}, {45, 40}}), Contour({{45, 20}, {49.5, 20}})}, 2},
      {"long silhouette", {Contour({{20, 20}, {40, 20}})}, 1},
      {"lone edge", {wall, Edge({{20, 20}, {24, 20}})}, 1},
      {"folded edge", {wall, Edge({{20, 20}, {23, 20}, {20, 20}})}, 1},
      {"held through another", {Edge({{15, 20}, {19, 20}}), Edge({{11, 20}, {15, 20}}), wall}, 3},
      {"tiny part", {Edge({{20, 20}, {24, 20}}), Edge({{24, 20}, {24, 24}})}, 2},
      {"nothing", {}, 0}};
  for (const auto& [name, given, kept] : cases) {
    std::vector<CandidateLine> lines = given;
    DropTicks(lines, ids);
    EXPECT_EQ(lines.size(), kept) << name;
  }
}

TEST(SvgPathTest, NumbersHaveTwoDecimalsInEveryLocale) {
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C"}) {
    std::setlocale(LC_ALL, name);
    EXPECT_EQ(SvgNumber(1234.5) + SvgNumber(-0.001) + SvgNumber(-2.004), "1234.500.00-2.00") << name;
  }
}

std::string Curve(const std::vector<Point2>& points) {
  std::string path;
  AppendCurve(path, points);
  return path;
}

TEST(SvgPathTest, ChordsOfArcsBecomeCurvesAndCornersStay) {
  EXPECT_EQ(std::ranges::count(Curve(Arc(50, 0, 90, 9)), 'C'), 9);
  EXPECT_EQ(Curve({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}),
            "M0.00 0.00L10.00 0.00L10.00 10.00L0.00 10.00L0.00 0.00Z");
  EXPECT_EQ(std::ranges::count(Curve({{0, 0}, {300, 0}, {590, 78}}), 'C'), 0) << "15 degrees between long pieces";
  std::vector<Point2> straightThenArc = Arc(50, 0, 90, 9);
  straightThenArc.insert(straightThenArc.begin(), {50, -400});
  EXPECT_EQ(Curve(straightThenArc).rfind("M50.00 -400.00L50.00 0.00C", 0), 0U);
}

TEST(SvgPathTest, CurvesStayNearTheirChords) {
  std::vector<Point2> circle = Arc(50, 0, 360, 36);
  circle.back() = circle.front();
  std::string path = Curve(circle);
  std::ranges::replace_if(
      path, [](char c) { return c >= 'A'; }, ' ');
  std::istringstream numbers(path);
  int points = 0;
  for (double x = 0, y = 0; numbers >> x >> y; ++points) EXPECT_NEAR(std::hypot(x, y), 50, 0.1);
  EXPECT_EQ(points, 1 + 3 * 36);
}

}  // namespace
}  // namespace zrfigure
