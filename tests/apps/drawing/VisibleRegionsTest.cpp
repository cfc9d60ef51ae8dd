#include "visibility/VisibleRegions.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "drawing/VisibleArea.h"

namespace zrfigure {
namespace {

IdBuffer BufferOf(int width, int height, const std::vector<int>& ids) {
  return {width, height, {ids.begin(), ids.end()}, std::vector<float>(ids.size(), 0)};
}

// Blobs, stripes and noise, so that runs of every length occur.
IdBuffer RandomMask(unsigned seed) {
  std::mt19937 random(seed);
  const auto pick = [&](int low, int high) { return low + static_cast<int>(random() % (high - low + 1)); };
  const int width = pick(1, 60), height = pick(1, 60);
  std::vector<int> ids(static_cast<std::size_t>(width) * height, -1);
  for (int blob = 0; blob < 12; ++blob) {
    const int id = pick(-1, 5), left = pick(0, width - 1), top = pick(0, height - 1);
    for (int y = top; y < std::min(height, top + pick(1, 30)); ++y) {
      for (int x = left; x < std::min(width, left + 20); ++x) ids[static_cast<std::size_t>(y) * width + x] = id;
    }
  }
  for (int dot = 0; dot < pick(0, 6); ++dot) ids[random() % ids.size()] = pick(-1, 5);
  return BufferOf(width, height, ids);
}

std::int64_t SquaredDepth(const IdBuffer& buffer, int x, int y) {
  std::int64_t best = INT64_MAX;
  for (int v = -1; v <= buffer.height; ++v) {
    for (int u = -1; u <= buffer.width; ++u) {
      const std::int64_t dx = u - x, dy = v - y;
      if (buffer.At(u, v) != buffer.At(x, y)) best = std::min(best, dx * dx + dy * dy);
    }
  }
  return best;
}

// The rule as a sentence would put it: deepest, then nearest to the centroid, then y, then x.
VisibleRegion BruteForce(const IdBuffer& buffer, int id) {
  std::vector<std::pair<int, int>> pixels;
  std::int64_t sumX = 0, sumY = 0;
  for (int i = 0; i < buffer.width * buffer.height; ++i) {
    if (buffer.ids[static_cast<std::size_t>(i)] != id) continue;
    pixels.emplace_back(i % buffer.width, i / buffer.width);
    sumX += i % buffer.width, sumY += i / buffer.width;
  }
  const auto count = static_cast<std::int64_t>(pixels.size());
  std::tuple<std::int64_t, std::int64_t, int, int> best{1, 0, 0, 0};
  for (const auto& [x, y] : pixels) {
    const std::int64_t dx = count * x - sumX, dy = count * y - sumY;
    best = std::min(best, std::tuple(-SquaredDepth(buffer, x, y), dx * dx + dy * dy, y, x));
  }
  const auto [depth, distance, y, x] = best;
  return {id, count, x, y, std::sqrt(static_cast<double>(-depth)), {}};
}

class VisibleRegionsTest : public testing::TestWithParam<unsigned> {};

TEST_P(VisibleRegionsTest, DeepestPixelsEqualBruteForceOnRandomMasks) {
  for (unsigned seed = GetParam(); seed < GetParam() + 25; ++seed) {
    const IdBuffer buffer = RandomMask(seed);
    const auto regions = FindVisibleRegions(buffer, View{});
    SCOPED_TRACE(seed);
    for (int id = 0; id <= 5; ++id) {
      const VisibleRegion* region = FindRegion(regions, id);
      const VisibleRegion wanted = BruteForce(buffer, id);
      ASSERT_EQ(region == nullptr, wanted.pixelCount == 0);
      if (region == nullptr) continue;
      EXPECT_EQ(std::tie(region->pixelCount, region->x, region->y), std::tie(wanted.pixelCount, wanted.x, wanted.y));
      EXPECT_DOUBLE_EQ(region->clearancePx, wanted.clearancePx);
    }
  }
}

TEST_P(VisibleRegionsTest, TracedAreasEncloseAsManyPixelsAsAreVisible) {
  const IdBuffer buffer = RandomMask(GetParam());
  const auto areas = TraceVisibleAreas(buffer);
  const auto regions = FindVisibleRegions(buffer, View{});
  ASSERT_EQ(areas.size(), regions.size());
  for (const VisibleRegion& region : regions) {
    double area = 0, border = 0;
    for (const auto& ring : areas.at(region.occurrence)) {
      for (std::size_t i = 1; i < ring.size(); ++i) {
        area += (ring[i - 1].x * ring[i].y - ring[i].x * ring[i - 1].y) / 2;
        border += Distance(ring[i - 1], ring[i]);
      }
      EXPECT_EQ(Distance(ring.front(), ring.back()), 0);
    }
    EXPECT_NEAR(area, static_cast<double>(region.pixelCount), 0.8 * border + 1);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, VisibleRegionsTest, testing::Range(0U, 200U, 25U));

TEST(VisibleRegionsTest, RingSharedByTwoSquaresOfOneOccurrenceSplitsAtTheirCorner) {
  EXPECT_EQ(TraceVisibleAreas(BufferOf(2, 2, {3, -1, -1, 3})).at(3).size(), 2U);
  EXPECT_TRUE(FindVisibleRegions(IdBuffer{}, View{}).empty());
}

}  // namespace
}  // namespace zrfigure
