#include "drawing/LineArt.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "apps/drawing/TestShapes.h"
#include "drawing/LineSmoothing.h"

namespace zrfigure {
namespace {

struct Drawing {
  View view;
  std::vector<ArtLine> lines;

  [[nodiscard]] double Length(int occurrence) const {
    double sum = 0;
    for (const ArtLine& line : lines) sum += line.occurrence == occurrence ? PolylineLength(line.points) : 0;
    return sum;
  }
  /// Straight pieces by their direction, so that an outline drawn in one stroke counts as its edges.
  [[nodiscard]] std::size_t Pieces() const {
    std::size_t count = 0;
    for (const ArtLine& line : lines) count += line.points.size() - 1;
    return count;
  }
};

Drawing Draw(const Model& model, const std::string& direction, int size = 400) {
  const std::vector<int> leaves = LeafOccurrences(model);
  const View view = ViewOf(model, direction, size);
  const VisibilityScene scene(model, leaves);
  return {view, DrawLineArt({model, scene, view, RenderIdBuffer(scene, view), leaves})};
}

TEST(LineArtTest, CubeShowsNineEdgesInIsoAndFourFromTheFront) {
  const Model cube = MakeModel({MakeBox({0, 0, 0}, {10, 10, 10})});
  const Drawing iso = Draw(cube, "iso");
  EXPECT_EQ(iso.Pieces(), 9U);
  EXPECT_NEAR(iso.Length(1), 90 * std::sqrt(2.0 / 3) * iso.view.scale, 0.5);
  EXPECT_EQ(std::ranges::count(iso.lines, LineClass::Outline, &ArtLine::lineClass), 6);
  EXPECT_EQ(Draw(cube, "front").Pieces(), 4U);
}

TEST(LineArtTest, VisibleLengthIsThatOfTheKnownEdges) {
  Model inside = MakeModel({MakeBox({0, 0, 0}, {20, 20, 20}), MakeCylinder(4, 10, 24)});
  inside.occurrences[2].toWorld.translation = {10, 10, 5};
  // The far box's top stands out by 5 mm above the near one; both are equally wide.
  const Model row = MakeModel({MakeBox({0, 0, 0}, {20, 10, 10}), MakeBox({5, 20, 0}, {15, 30, 15})});
  // Like a nut on a plate: its bottom edges lie in the plate's top face.
  const Model nut = MakeModel({MakeBox({0, 0, 0}, {40, 40, 5}), MakeBox({15, 15, 5}, {25, 25, 12})});
  Mesh sheet{{{0, 0, 0}, {30, 0, 0}, {30, 20, 0}, {0, 20, 0}}, {4, {0, 0, 1}}, {{0, 1, 2}, {0, 2, 3}}, {}};
  sheet.sharpEdges = {{{0, 0, 0}, {30, 0, 0}, {30, 20, 0}, {0, 20, 0}, {0, 0, 0}}};
  Mesh marked = MakeBox({0, 0, 0}, {10, 10, 10});
  marked.sharpEdges = {{{2, -0.001F, 2}, {8, -0.001F, 2}}};  // A mark on the front face, in no triangle.
  const Model cylinder = MakeModel({MakeCylinder(10, 60, 48)});
  Model mirrored = MakeModel({MakeCylinder(5, 30, 48)});
  mirrored.occurrences[1].toWorld.linear = {{{-2, 0, 0}, {0, 2, 0}, {0, 0, 2}}};
  const double iso = std::sqrt(2.0 / 3);
  struct Case {
    const char* name;
    Model model;
    const char* direction;
    int occurrence;
    double lengthMm, tolerancePx;
  };
  const Case cases[] = {{"nothing", MakeModel({}), "iso", 1, 0, 0},
                        {"part inside another", inside, "iso", 2, 0, 0},
                        {"box before another", row, "front", 1, 60, 2},
                        {"box behind another", row, "front", 2, 20, 4},
                        {"touching parts keep their common line", nut, "iso", 2, (6 * 10 + 3 * 7) * iso, 2},
                        {"cylinder from above, without ticks", cylinder, "top", 1, 20 * std::numbers::pi, 5},
                        {"round contour", MakeModel({MakeSphere(10, 64)}), "12,34", 1, 20 * std::numbers::pi, 5},
                        {"mirrored and scaled", mirrored, "top", 1, 20 * std::numbers::pi, 5},
                        {"sheet from above", MakeModel({sheet}), "top", 1, 100, 1},
                        {"sheet from below", MakeModel({sheet}), "bottom", 1, 100, 1},
                        {"outline without a sharp edge", MakeModel({marked}), "front", 1, 4 * 10 + 6, 5}};
  for (const Case& c : cases) {
    const Drawing drawing = Draw(c.model, c.direction);
    EXPECT_NEAR(drawing.Length(c.occurrence), c.lengthMm * drawing.view.scale, c.tolerancePx) << c.name;
    for (const ArtLine& line : drawing.lines) EXPECT_GT(PolylineLength(line.points), 8) << c.name;
    EXPECT_LE(drawing.lines.size(), c.name[0] == 'r' ? 1U : 99U) << "drawn in one stroke";
    EXPECT_TRUE(std::ranges::is_sorted(drawing.lines, {}, &ArtLine::occurrence)) << c.name;
  }
}

TEST(LineArtTest, CylinderHasTwoStraightSidesAtTheRadius) {
  for (const std::uint32_t facets : {16U, 24U, 37U, 96U}) {
    SCOPED_TRACE(facets);
    const Drawing drawing = Draw(MakeModel({MakeCylinder(10, 60, facets)}), "7,20", 600);
    const double radius = 10 * drawing.view.scale, sagitta = radius * (1 - std::cos(std::numbers::pi / facets));
    int sides = 0;
    for (const ArtLine& line : drawing.lines) {
      const Point2 ends = line.points.back() - line.points.front();
      if (std::abs(ends.y) < 100 || std::abs(ends.x) > 3) continue;
      EXPECT_NEAR(std::abs(ends.y), 60 * drawing.view.scale * std::cos(20 * std::numbers::pi / 180), 12);
      EXPECT_EQ(line.lineClass, LineClass::Outline);
      EXPECT_NEAR(std::abs(line.points.front().x - 300), radius, sagitta + 0.5);
      ++sides;
    }
    EXPECT_EQ(sides, 2);
  }
}

}  // namespace
}  // namespace zrfigure
