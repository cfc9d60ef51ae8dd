#include "import/CreaseMesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>

namespace zrfigure {
namespace {

/// An upright prism whose quads share no vertex; open at both ends.
TriangleSoup Tube(int sides) {
  TriangleSoup soup;
  const auto corner = [sides](int i, float z) {
    const double angle = 2 * std::numbers::pi * (i % sides) / sides;
    return std::array<float, 3>{static_cast<float>(10 * std::cos(angle)), static_cast<float>(10 * std::sin(angle)), z};
  };
  for (int i = 0; i < sides; ++i) {
    const auto first = static_cast<std::uint32_t>(soup.positions.size());
    for (const float z : {0.F, 5.F}) {
      soup.positions.push_back(corner(i, z));
      soup.positions.push_back(corner(i + 1, z));
    }
    soup.triangles.push_back({first, first + 1, first + 3});
    soup.triangles.push_back({first, first + 3, first + 2});
  }
  return soup;
}

TEST(CreaseMesh, SmoothsAngleBelowThirtyDegreesAndSplitsAbove) {
  const Mesh round = BuildCreasedMesh(Tube(13));  // 27.7 degrees from side to side
  EXPECT_EQ(round.positions.size(), 26U);
  ASSERT_EQ(round.sharpEdges.size(), 2U) << "the two rims";
  EXPECT_EQ(round.sharpEdges[0].size(), 14U);
  EXPECT_EQ(round.sharpEdges[0].front(), round.sharpEdges[0].back());
  for (std::size_t i = 0; i < round.normals.size(); ++i) {
    const auto& n = round.normals[i];
    EXPECT_NEAR(std::hypot(n[0], n[1], n[2]), 1, 1e-5);
    EXPECT_NEAR((n[0] * round.positions[i][0] + n[1] * round.positions[i][1]) / 10, 1, 1e-3) << "radial";
  }
  const Mesh angular = BuildCreasedMesh(Tube(11));  // 32.7 degrees
  EXPECT_EQ(angular.positions.size(), 44U);
  EXPECT_EQ(angular.sharpEdges.size(), 33U) << "a rib and two rim pieces a side";
}

TEST(CreaseMesh, OutlinesASquareOnceHoweverItsTrianglesWind) {
  const std::tuple<const char*, std::vector<std::array<std::uint32_t, 3>>, std::size_t, std::size_t> squares[] = {
      {"both sides", {{0, 1, 2}, {0, 2, 3}, {2, 1, 0}, {3, 2, 0}}, 2, 4},
      {"opposite winding: normals stay apart", {{0, 1, 2}, {0, 3, 2}}, 2, 6}};
  for (const auto& [name, triangles, kept, positions] : squares) {
    const Mesh mesh = BuildCreasedMesh({{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, triangles});
    EXPECT_EQ(mesh.triangles.size(), kept) << name;
    EXPECT_EQ(mesh.positions.size(), positions) << name;
    ASSERT_EQ(mesh.sharpEdges.size(), 1U) << name << ": the border alone, not the diagonal";
    EXPECT_EQ(mesh.sharpEdges[0].size(), 5U) << name;
  }
}

TEST(CreaseMesh, LeavesOutWhatIsNoTriangle) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  TriangleSoup soup;
  soup.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {kNan, 0, 0}};
  soup.triangles = {{0, 1, 3}, {0, 1, 9}, {0, 1, 4}, {1, 1, 2}};
  EXPECT_TRUE(BuildCreasedMesh(soup).triangles.empty());
  EXPECT_TRUE(BuildCreasedMesh({}).positions.empty());
  soup.triangles.push_back({0, 1, 2});
  EXPECT_EQ(BuildCreasedMesh(soup).triangles.size(), 1U);
}

}  // namespace
}  // namespace zrfigure
