#include "drawing/LineArt.h"

#include <gtest/gtest.h>

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
  [[nodiscard]] Box2 Box() const {
    Box2 box;
    for (const ArtLine& line : lines) {
      for (const Point2 p : line.points) box.Add(p);
    }
    return box;
  }
};

Drawing Draw(const Model& model, const std::string& direction, int size = 400) {
  const std::vector<int> leaves = LeafOccurrences(model);
  const View view = ViewOf(model, direction, size);
  const VisibilityScene scene(model, leaves);
  const IdBuffer ids = RenderIdBuffer(scene, view);
  return {view, DrawLineArt({model, scene, view, ids, leaves})};
}

// Straight pieces by their direction, so that an outline drawn in one stroke counts as its edges.
int StraightPieces(const Drawing& drawing, double shortest) {
  int count = 0;
  for (const ArtLine& line : drawing.lines) {
    for (std::size_t i = 1; i < line.points.size(); ++i)
      count += Distance(line.points[i - 1], line.points[i]) > shortest;
  }
  return count;
}

TEST(LineArtTest, CubeShowsNineEdgesInIsoAndFourFromTheFront) {
  const Model cube = MakeModel({MakeBox({0, 0, 0}, {10, 10, 10})});
  const Drawing iso = Draw(cube, "iso");
  EXPECT_EQ(StraightPieces(iso, 0), 9);
  const double edge = iso.view.scale * 10 * std::sqrt(2.0 / 3);
  EXPECT_NEAR(iso.Length(1), 9 * edge, 0.5);
  int wide = 0;
  for (const ArtLine& line : iso.lines) wide += line.lineClass == LineClass::Outline;
  EXPECT_EQ(wide, 6);
  EXPECT_EQ(StraightPieces(Draw(cube, "front"), 0), 4);
}

TEST(LineArtTest, BoxBehindAnotherLosesWhatIsCovered) {
  // The far box's top stands out by 5 mm above the near one; both are equally wide.
  const Model model = MakeModel({MakeBox({0, 0, 0}, {20, 10, 10}), MakeBox({5, 20, 0}, {15, 30, 15})});
  const Drawing drawing = Draw(model, "front");
  EXPECT_NEAR(drawing.Length(1), 60 * drawing.view.scale, 2);
  EXPECT_NEAR(drawing.Length(2), 20 * drawing.view.scale, 4);
}

TEST(LineArtTest, PartInsideAnotherIsNotDrawn) {
  const Model model = MakeModel({MakeBox({0, 0, 0}, {20, 20, 20}), MakeCylinder(4, 10, 24)});
  EXPECT_GT(Draw(model, "iso").Length(1), 100);
  Model inside = model;
  inside.occurrences[2].toWorld.translation = {10, 10, 5};
  EXPECT_EQ(Draw(inside, "iso").Length(2), 0);
}

TEST(LineArtTest, TouchingPartsKeepTheirCommonLine) {
  // A nut-like box on a plate: its bottom edges lie in the plate's top face.
  const Model model = MakeModel({MakeBox({0, 0, 0}, {40, 40, 5}), MakeBox({15, 15, 5}, {25, 25, 12})});
  const Drawing drawing = Draw(model, "iso");
  const double perMm = drawing.view.scale * std::sqrt(2.0 / 3);
  EXPECT_NEAR(drawing.Length(2), (6 * 10 + 3 * 7) * perMm, 2);
  for (const ArtLine& line : drawing.lines) EXPECT_GT(PolylineLength(line.points), 8);
}

class CylinderSilhouetteTest : public testing::TestWithParam<std::uint32_t> {};

TEST_P(CylinderSilhouetteTest, HasTwoStraightSidesAtTheRadius) {
  const Model model = MakeModel({MakeCylinder(10, 60, GetParam())});
  const Drawing drawing = Draw(model, "7,20", 600);
  const double radius = 10 * drawing.view.scale;
  std::vector<double> sides;
  for (const ArtLine& line : drawing.lines) {
    const Point2 ends = line.points.back() - line.points.front();
    if (std::abs(ends.y) < 100 || std::abs(ends.x) > 3) continue;
    EXPECT_NEAR(std::abs(ends.y), 60 * drawing.view.scale * std::cos(20 * std::numbers::pi / 180), 12);
    EXPECT_EQ(line.lineClass, LineClass::Outline);
    sides.push_back(std::abs(line.points.front().x - 300));
  }
  ASSERT_EQ(sides.size(), 2U);
  const double sagitta = radius * (1 - std::cos(std::numbers::pi / GetParam()));
  for (const double side : sides) EXPECT_NEAR(side, radius, sagitta + 0.5);
}

INSTANTIATE_TEST_SUITE_P(Facets, CylinderSilhouetteTest, testing::Values(16U, 24U, 37U, 96U));

TEST(LineArtTest, CylinderFromAboveIsOneCircleWithoutTicks) {
  const Drawing drawing = Draw(MakeModel({MakeCylinder(10, 60, 48)}), "top");
  ASSERT_EQ(drawing.lines.size(), 1U);
  EXPECT_NEAR(drawing.Length(1), 2 * std::numbers::pi * 10 * drawing.view.scale, 5);
}

TEST(LineArtTest, SphereIsOneClosedRound) {
  for (const char* direction : {"iso", "front", "12,34"}) {
    const Drawing drawing = Draw(MakeModel({MakeSphere(10, 64)}), direction);
    ASSERT_EQ(drawing.lines.size(), 1U) << direction;
    const auto& points = drawing.lines[0].points;
    EXPECT_LT(Distance(points.front(), points.back()), 1) << direction;
    for (const Point2 p : points) EXPECT_NEAR(Distance(p, {200, 200}), 10 * drawing.view.scale, 1.5) << direction;
  }
}

TEST(LineArtTest, MirroredAndScaledPlacementsDrawLikeTheirMesh) {
  const Drawing plain = Draw(MakeModel({MakeCylinder(10, 30, 32)}), "iso");
  Model mirrored = MakeModel({MakeCylinder(5, 15, 32)});
  mirrored.occurrences[1].toWorld.linear = {{{-2, 0, 0}, {0, 2, 0}, {0, 0, 2}}};
  const Drawing drawing = Draw(mirrored, "iso");
  EXPECT_NEAR(drawing.Length(1), plain.Length(1), 4);
}

TEST(LineArtTest, SheetWithoutThicknessIsDrawnFromBothSides) {
  Mesh sheet;
  sheet.positions = {{0, 0, 0}, {30, 0, 0}, {30, 20, 0}, {0, 20, 0}};
  sheet.normals.assign(4, {0, 0, 1});
  sheet.triangles = {{0, 1, 2}, {0, 2, 3}};
  sheet.sharpEdges = {{{0, 0, 0}, {30, 0, 0}, {30, 20, 0}, {0, 20, 0}, {0, 0, 0}}};
  for (const char* direction : {"top", "bottom"}) {
    const Drawing drawing = Draw(MakeModel({sheet}), direction);
    EXPECT_NEAR(drawing.Length(1), 100 * drawing.view.scale, 1) << direction;
  }
}

TEST(LineArtTest, OutlineIsDrawnWhereTheMeshListsNoSharpEdge) {
  Mesh box = MakeBox({0, 0, 0}, {10, 10, 10});
  box.sharpEdges = {{{2, -0.001F, 2}, {8, -0.001F, 2}}};  // A mark on the front face, in no triangle.
  const Drawing drawing = Draw(MakeModel({box}), "front");
  EXPECT_NEAR(drawing.Length(1), (4 * 10 + 6) * drawing.view.scale, 5);
}

TEST(LineArtTest, SameModelGivesTheSameLinesTwice) {
  std::vector<Mesh> meshes;
  for (int i = 0; i < 12; ++i) meshes.push_back(i % 2 ? MakeSphere(6, 24) : MakeCylinder(5, 12, 20));
  Model model = MakeModel(meshes);
  for (int i = 1; i <= 12; ++i) model.occurrences[i].toWorld.translation = {i * 4.0, (i % 3) * 7.0, (i % 5) * 3.0};
  const Drawing first = Draw(model, "iso"), second = Draw(model, "iso");
  ASSERT_EQ(first.lines.size(), second.lines.size());
  ASSERT_GT(first.lines.size(), 20U);
  for (std::size_t i = 0; i < first.lines.size(); ++i) {
    EXPECT_EQ(first.lines[i].occurrence, second.lines[i].occurrence);
    ASSERT_EQ(first.lines[i].points.size(), second.lines[i].points.size());
    for (std::size_t k = 0; k < first.lines[i].points.size(); ++k) {
      EXPECT_EQ(Distance(first.lines[i].points[k], second.lines[i].points[k]), 0);
    }
  }
  EXPECT_TRUE(std::ranges::is_sorted(first.lines, {}, &ArtLine::occurrence));
}

TEST(LineArtTest, ModelWithoutPartsGivesNoLines) {
  EXPECT_TRUE(Draw(MakeModel({}), "iso").lines.empty());
}

}  // namespace
}  // namespace zrfigure
