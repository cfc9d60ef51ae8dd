#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include <dg/Angle.h>
#include <dg/Camera3D.h>
#include <dg/DBox.h>
#include <dg/DBox2D.h>
#include <dg/DMat44.h>
#include <dg/LengthUnit.h>
#include <dg/Location.h>

namespace {

using namespace dg;

constexpr double kTolerance = 1e-9;
constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void ExpectNear(const DPoint3D& actual, const DPoint3D& expected) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(actual[i], expected[i], kTolerance) << "coordinate " << i;
}

TEST(AngleTest, RunsFromZeroToTheFullTurn) {
  EXPECT_EQ(Angle({1, 0}), 0);
  EXPECT_EQ(Angle({-0.0, -0.0}), 0);
  EXPECT_NEAR(Angle({0, -1}), 1.5 * kPi, kTolerance);
  EXPECT_NEAR(Angle({-1, -0.0}), kPi, kTolerance);
  EXPECT_LT(Angle({1, -1e-300}), 2 * kPi);
  EXPECT_TRUE(std::isnan(Angle({kNaN, 1})));
}

TEST(BoxTest, ContainsItsBorderAndExtendsFromEmpty) {
  const DBox2D box({0, 0}, {10, 5});
  EXPECT_TRUE(box.Contains({10, 5}, 0));
  EXPECT_FALSE(box.Contains({10.5, 5}, 0));
  EXPECT_TRUE(box.Contains({10.5, 5}, 0.5));
  EXPECT_FALSE(box.Contains({kNaN, 1}, 0));
  EXPECT_TRUE(DBox2D::EMPTY.IsEmpty());
  EXPECT_FALSE(DBox2D::EMPTY.Contains({0, 0}, 0));
  EXPECT_EQ(DBox2D().GetWidth(), 0);
  DBox space;
  EXPECT_TRUE(space.IsEmpty());
  space.Extend({1, 2, 3});
  EXPECT_FALSE(space.IsEmpty());
  space.Extend({-1, 5, 3});
  EXPECT_EQ(space.GetWidth(), 2);
  EXPECT_EQ(space.GetHeight(), 3);
}

TEST(DMat44Test, InverseUndoesTheTransform) {
  DMat44 matrix;
  const double values[4][4] = {{0, 2, 0, 0.1}, {3, 0, 1, 0}, {0, 0, -4, 0.2}, {5, 6, 7, 1}};
  std::copy(&values[0][0], &values[0][0] + 16, &matrix.m[0][0]);
  DMat44 inverse = matrix;
  ASSERT_TRUE(inverse.Invert());
  ExpectNear(DPoint3D(1, 2, 3) * matrix * inverse, {1, 2, 3});
  ExpectNear(DPoint3D(1, 2, 3) * (matrix * inverse), {1, 2, 3});
  for (const double bad : {0.0, kNaN, std::numeric_limits<double>::infinity()}) {
    DMat44 singular;
    singular.m[2][2] = bad;
    EXPECT_FALSE(singular.Invert());
    EXPECT_EQ(singular.m[0][0], 1) << "stays as it is";
    EXPECT_EQ(singular.m[3][2], 0);
  }
}

TEST(LocationTest, TransformTurnsScalesThenMoves) {
  FMat33 turn = FMat33::Scale(0);
  turn.m[0][1] = 3;
  turn.m[1][0] = -3;
  turn.m[2][2] = 3;
  const Location location(turn, {10, 20, 30});
  EXPECT_EQ(location.GetScale(), 3);
  EXPECT_EQ(Location(FMat33::Scale(0.1), {}).GetScale(), 0.1);
  ExpectNear(DPoint3D(1, 0, 1) * location.GetXform(), {10, 23, 33});
  ExpectNear(DVec3(1, 0, 1) * location.GetXform(), {0, 3, 3});
}

/// Seen from the front: x of the model to the right, z up, y away from the viewer.
class Camera3DTest : public testing::Test {
protected:
  DPoint3D Project(const DPoint3D& point) const { return point * camera_.GetObjectToPixel(); }

  Camera3D camera_;
  const DPoint3D eye_{0, -100, 0};
  const DVec3 up_{0, 0, 1};
};

TEST_F(Camera3DTest, ParallelProjectionsPutTheTargetInTheMiddle) {
  camera_.SetOrthographic(eye_, {0, 0, 0}, up_, 50, 200, 100);
  ExpectNear(Project({0, 0, 0}), {100, 50, 200});
  ExpectNear(Project({10, 0, 25}), {120, 0, 200});
  const Camera3D before = camera_;
  camera_.SetParallel({0, 0, 0}, {0, 5, 0}, up_, 2, 200, 100);
  ExpectNear(Project({10, 3, 25}), {120, 0, 6});
  EXPECT_NE(camera_, before);
}

TEST_F(Camera3DTest, PerspectiveShrinksWithDistance) {
  camera_.SetPerspective(eye_, {0, 0, 0}, up_, kPi / 2, 200, 200);
  ExpectNear(Project({0, 0, 0}), {100, 100, 0});
  ExpectNear(Project({100, 0, 100}), {200, 0, 0});
  ExpectNear(Project({100, 100, 100}), {150, 50, 0.5});
  DMat44 back = camera_.GetObjectToPixel();
  ASSERT_TRUE(back.Invert());
  ExpectNear(DPoint3D(150, 50, 0.5) * back, {100, 100, 100});
}

TEST_F(Camera3DTest, UpAlongTheLineOfSightIsReplacedAndDegenerateSetUpChangesNothing) {
  for (const DVec3& up : {DVec3(0, 1, 0), DVec3(0, -7, 0), DVec3::ZERO}) {
    camera_.SetParallel({0, 0, 0}, {0, 1, 0}, up, 1, 100, 100);
    DMat44 inverse = camera_.GetObjectToPixel();
    EXPECT_TRUE(inverse.Invert());
    ExpectNear(Project({0, 1, 0}), {50, 50, 1});
  }

  camera_.SetParallel({1, 2, 3}, {1, 1, 1}, up_, 4, 640, 480);
  const Camera3D before = camera_;
  camera_.SetOrthographic(eye_, eye_, up_, 50, 200, 100);
  camera_.SetOrthographic(eye_, {0, 0, 0}, up_, 0, 200, 100);
  camera_.SetOrthographic(eye_, {0, 0, 0}, up_, kNaN, 200, 100);
  camera_.SetParallel({0, 0, 0}, {0, kNaN, 0}, up_, 1, 200, 100);
  camera_.SetParallel({0, 0, 0}, {0, 1, 0}, up_, 1, 0, 100);
  camera_.SetPerspective(eye_, {0, 0, 0}, up_, kPi, 200, 100);
  EXPECT_EQ(camera_, before);
}

TEST(LengthUnitTest, ConvertsLengthsAndAreas) {
  EXPECT_DOUBLE_EQ(LengthUnit::Convert(LengthUnit::POINT, LengthUnit::MILLIMETER, 72, 1), 25.4);
  EXPECT_DOUBLE_EQ(LengthUnit::Convert(LengthUnit::METER, LengthUnit::CENTIMETER, 2, 1), 200);
  EXPECT_DOUBLE_EQ(LengthUnit::Convert(LengthUnit::INCH, LengthUnit::MILLIMETER, 1, 2), 645.16);
  EXPECT_EQ(LengthUnit::Convert(LengthUnit::INCH, LengthUnit::INCH, 0.1, 1), 0.1);
}

}  // namespace
