#include "visibility/View.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "apps/drawing/TestShapes.h"

namespace zrfigure {
namespace {

void ExpectNear(Vec3 actual, Vec3 expected) {
  EXPECT_NEAR(Length(actual - expected), 0, 1e-9);
}

TEST(ViewDirectionTest, LooksFromWhereItSays) {
  const std::tuple<const char*, Vec3, Vec3> views[] = {
      {"iso", {1, -1, 1}, {-1, 1, 2}},
      {"front", {0, -1, 0}, {0, 0, 1}},
      {"top", {0, 0, 1}, {0, 1, 0}},
      {"left", {-1, 0, 0}, {0, 0, 1}},
      {"90,0", {1, 0, 0}, {0, 0, 1}},
      {"bottom", {0, 0, -1}, {0, -1, 0}},
      {"-45,-30", {-1, -1, -std::sqrt(2.0 / 3)}, {-1, -1, std::sqrt(6.0)}}};
  for (const auto& [text, toViewer, up] : views) {
    SCOPED_TRACE(text);
    std::string error;
    const auto direction = ParseViewDirection(text, error);
    ASSERT_TRUE(direction) << error;
    ExpectNear(direction->toViewer, Normalized(toViewer));
    ExpectNear(direction->up, Normalized(up));
  }
}

TEST(ViewTest, MatrixAndInverseAgreeWithToPixel) {
  const Model model = MakeModel({MakeBox({5, -20, 3}, {40, 10, 30})});
  const View view = ViewOf(model, "33,21", 500);
  const Vec3 world{12, 7, -5};
  const Vec3 pixel = view.ToPixel(world);
  const auto m = view.WorldToPixel().m;
  const auto column = [&](int j) { return world.x * m[0][j] + world.y * m[1][j] + world.z * m[2][j] + m[3][j]; };
  ExpectNear({column(0), column(1), column(2)}, pixel);
  EXPECT_DOUBLE_EQ(column(3), 1);
  ExpectNear(view.ToWorld(pixel), world);
  EXPECT_LT(view.ToPixel(world + view.direction.toViewer).z, pixel.z) << "depth must grow away from the viewer";
  EXPECT_LT(view.ToPixel(world + view.direction.up).y, pixel.y) << "up is up the page";
}

TEST(ViewTest, FittedModelTouchesTheTargetAndIsCentred) {
  const Box2 target{50, 100, 450, 900};
  const std::pair<Mesh, double> cases[] = {
      {MakeBox({100, 0, 0}, {140, 10, 20}), 10}, {MakeBox({0, 0, 0}, {10, 0, 0}), 40}, {Mesh(), 1}};
  for (const auto& [mesh, scale] : cases) {
    const Model model = MakeModel({mesh});
    const View view = FitView(model, LeafOccurrences(model), {}, target, {500, 1000});
    EXPECT_NEAR(view.scale, scale, 1e-9);
    if (mesh.positions.empty()) continue;
    const Box2 box = ProjectedBox(model, LeafOccurrences(model), view);
    EXPECT_NEAR(box.minX, target.minX, 1e-9);
    EXPECT_NEAR(box.maxX, target.maxX, 1e-9);
    EXPECT_NEAR(box.Centre().y, 500, 1e-9);
  }
}

// Parts inside the box of the others are passed over: whatever their order, the box is that of every vertex, bit by
// bit.
TEST(ViewTest, BoxHoldsEveryVertexInWhateverOrderThePartsCome) {
  std::mt19937 random(1);
  const auto coordinate = [&] { return static_cast<double>(random() % 21) - 10; };
  for (int round = 0; round < 40; ++round) {
    std::vector<Mesh> parts;
    for (int i = 0; i < 12; ++i) {
      const Vec3 low{coordinate(), coordinate(), coordinate()};
      parts.push_back(MakeBox(low, low + Vec3{1, 1, 1} * (random() % 8)));
    }
    const Model model = MakeModel(parts);
    const View view = ViewOf(model, "33,21", 500);
    Box2 all;
    for (const Mesh& part : parts) {
      for (const auto& p : part.positions) all.Add({view.ToPixel(ToVec3(p)).x, view.ToPixel(ToVec3(p)).y});
    }
    const Box2 box = ProjectedBox(model, LeafOccurrences(model), view);
    EXPECT_EQ(std::tie(box.minX, box.maxX, box.minY, box.maxY), std::tie(all.minX, all.maxX, all.minY, all.maxY));
  }
}

}  // namespace
}  // namespace zrfigure
