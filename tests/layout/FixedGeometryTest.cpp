#include "layout/placement/FixedGeometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace zrcallouts::placement {

namespace {

TEST(FixedGeometry, SegmentsMeetWhereTheyShareAPoint) {
  const FixedPoint low{-kLimit, -kLimit}, high{kLimit, kLimit};
  const struct {
    const char* name;
    FixedPoint a, b, c, d;
    bool meet;
  } pairs[] = {{"cross", {0, 0}, {10, 10}, {0, 10}, {10, 0}, true},
               {"touch with an end", {0, 0}, {10, 0}, {5, 0}, {5, 9}, true},
               {"share an end", {0, 0}, {10, 0}, {10, 0}, {20, 9}, true},
               {"overlap on one line", {0, 0}, {10, 0}, {5, 0}, {15, 0}, true},
               {"apart on one line", {0, 0}, {10, 0}, {11, 0}, {15, 0}, false},
               {"parallel", {0, 0}, {10, 0}, {0, 1}, {10, 1}, false},
               {"bounds overlap only", {0, 0}, {10, 10}, {6, 0}, {10, 5}, false},
               {"one unit short of touching at the limit", low, high, {0, 1}, {-kLimit, kLimit}, false},
               {"touching at the limit", low, high, {0, 0}, {-kLimit, kLimit}, true}};
  for (const auto& pair : pairs) {
    EXPECT_EQ(SegmentsMeet(pair.a, pair.b, pair.c, pair.d), pair.meet) << pair.name;
    EXPECT_EQ(SegmentsMeet(pair.d, pair.c, pair.a, pair.b), pair.meet) << pair.name << ", swapped";
  }
}

TEST(FixedGeometry, SegmentEntersTheInteriorOfABoxOnly) {
  const FixedBox box{10, 10, 20, 20};
  const std::tuple<FixedPoint, FixedPoint, bool> cases[] = {
      {{0, 15}, {30, 15}, true},  {{12, 12}, {18, 18}, true}, {{0, 0}, {11, 11}, true},  {{0, 10}, {30, 10}, false},
      {{0, 20}, {20, 0}, false},  {{0, 20}, {20, 40}, false}, {{0, 10}, {10, 0}, false}, {{20, 0}, {20, 40}, false},
      {{0, 19}, {11, 30}, false}, {{5, 10}, {10, 15}, false},
  };
  for (const auto& [a, b, enters] : cases)
    EXPECT_EQ(SegmentEntersBox(a, b, box), enters) << a.x << ',' << a.y << " to " << b.x << ',' << b.y;
  EXPECT_FALSE(SegmentEntersBox({0, 10}, {30, 10}, {10, 10, 20, 10})) << "a box without area";
}

TEST(FixedGeometry, PixelsAreRoundedToTheRasterAndLimited) {
  EXPECT_EQ(ToFixed(1.5), 24);
  EXPECT_EQ(ToFixed(-0.04), -1);
  EXPECT_EQ(ToFixed(std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(ToFixed(std::numeric_limits<double>::infinity()), kLimit);
  EXPECT_EQ(ToPixels(FixedPoint{24, -8}), (Point{1.5, -0.5}));
}

}  // namespace

}  // namespace zrcallouts::placement
