#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include <dg/Angle.h>
#include <dg/Camera3D.h>
#include <dg/DMat44.h>

namespace {

using namespace dg;

constexpr double kTolerance = 1e-9;
constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(AngleTest, RunsFromZeroToTheFullTurn) {
  EXPECT_EQ(Angle({-0.0, -0.0}), 0);
  EXPECT_NEAR(Angle({0, -1}), 1.5 * kPi, kTolerance);
  EXPECT_NEAR(Angle({-1, -0.0}), kPi, kTolerance);
  EXPECT_LT(Angle({1, -1e-300}), 2 * kPi);
  EXPECT_TRUE(std::isnan(Angle({kNaN, 1})));
}

TEST(Camera3DTest, UpAlongTheLineOfSightIsReplacedAndDegenerateSetUpChangesNothing) {
  Camera3D camera;
  for (const DVec3& up : {DVec3(0, 1, 0), DVec3(0, -7, 0), DVec3::ZERO}) {
    camera.SetParallel({0, 0, 0}, {0, 1, 0}, up, 1, 100, 100);
    const DPoint3D middle = DPoint3D(0, 1, 0) * camera.GetObjectToPixel();
    EXPECT_NEAR(middle.x, 50, kTolerance);
    EXPECT_NEAR(middle.y, 50, kTolerance);
  }
  const Camera3D before = camera;
  const DPoint3D eye(0, -100, 0);
  const DVec3 up(0, 0, 1);
  camera.SetOrthographic(eye, eye, up, 50, 200, 100);
  camera.SetOrthographic(eye, {0, 0, 0}, up, 0, 200, 100);
  camera.SetOrthographic(eye, {0, 0, 0}, up, kNaN, 200, 100);
  camera.SetParallel({0, 0, 0}, {0, kNaN, 0}, up, 1, 200, 100);
  camera.SetParallel({0, 0, 0}, {0, 1, 0}, up, 1, 0, 100);
  camera.SetPerspective(eye, {0, 0, 0}, up, kPi, 200, 100);
  EXPECT_EQ(camera, before);
}

}  // namespace
