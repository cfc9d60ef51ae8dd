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
      {"right", {1, 0, 0}, {0, 0, 1}},
      {"left", {-1, 0, 0}, {0, 0, 1}},
      {"back", {0, 1, 0}, {0, 0, 1}},
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

TEST(ViewDirectionTest, BadTextIsRefusedAndInTheMessage) {
  for (const char* text :
       {"", "Iso", "45", "45,", ",30", "45,30,1", "45,91", "0,-90.5", "nan,0", "inf,0", "45 ,30", "4x,30", "1e999,0"}) {
    std::string error;
    EXPECT_FALSE(ParseViewDirection(text, error)) << text;
    EXPECT_NE(error.find("'" + std::string(text) + "'"), std::string::npos) << error;
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
  const Model model = MakeModel({MakeBox({100, 0, 0}, {140, 10, 20})});
  const std::vector<int> leaves = LeafOccurrences(model);
  const Box2 target{50, 100, 450, 900};
  const View view = FitView(model, leaves, {}, target, {500, 1000});
  const Box2 box = ProjectedBox(model, leaves, view);
  EXPECT_NEAR(box.minX, 50, 1e-9);
  EXPECT_NEAR(box.maxX, 450, 1e-9);
  EXPECT_NEAR(box.Centre().y, 500, 1e-9);
  EXPECT_NEAR(view.scale, 10, 1e-12);
}

// Parts inside the box of the others are passed over: whatever their order, the box is that of every vertex, bit by
// bit.
TEST(ViewTest, BoxHoldsEveryVertexInWhateverOrderThePartsCome) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    const auto coordinate = [&] { return static_cast<double>(random() % 21) - 10; };
    std::vector<Mesh> parts;
    for (int i = 0; i < 12; ++i) {
      const Vec3 low{coordinate(), coordinate(), coordinate()};
      parts.push_back(MakeBox(low, low + Vec3{1, 1, 1} * (random() % 8)));
    }
    const Model model = MakeModel(parts);
    const View view = ViewOf(model, "33,21", 500);
    Box2 expected;
    for (const Mesh& part : parts) {
      for (const auto& position : part.positions) {
        const Vec3 pixel = view.ToPixel(ToVec3(position));
        expected.Add({pixel.x, pixel.y});
      }
    }
    const Box2 box = ProjectedBox(model, LeafOccurrences(model), view);
    EXPECT_TRUE(box.minX == expected.minX && box.maxX == expected.maxX) << "seed " << seed;
    EXPECT_TRUE(box.minY == expected.minY && box.maxY == expected.maxY) << "seed " << seed;
  }
}

TEST(ViewTest, FitKeepsScaleFiniteWhenThereIsNothingToFit) {
  const Model empty = MakeModel({});
  EXPECT_EQ(FitView(empty, LeafOccurrences(empty), {}, {0, 0, 100, 100}, {100, 100}).scale, 1);
  const Model flat = MakeModel({MakeBox({0, 0, 0}, {10, 0, 0})});
  EXPECT_NEAR(FitView(flat, LeafOccurrences(flat), {}, {0, 0, 100, 100}, {100, 100}).scale, 10, 1e-9);
}

}  // namespace
}  // namespace zrfigure
