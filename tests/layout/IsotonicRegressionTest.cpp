#include "layout/placement/IsotonicRegression.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace zrcallouts::placement {

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

/// The fit in closed form: of the runs that hold the position, each begin with its least mean, the largest of these.
double FitByMeans(const std::vector<double>& wished, const std::vector<double>& weights, std::size_t position) {
  double fitted = -kInf;
  for (std::size_t begin = 0; begin <= position; ++begin) {
    double least = kInf, sum = 0, weight = 0;
    for (std::size_t end = begin; end < wished.size(); ++end) {
      sum += wished[end] * weights[end];
      weight += weights[end];
      if (end >= position) least = std::min(least, sum / weight);
    }
    fitted = std::max(fitted, least);
  }
  return fitted;
}

TEST(IsotonicRegression, FitsAsTheMeansOfRunsSay) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    std::vector<double> wished(1 + random() % 9), weights(wished.size());
    for (double& value : wished) value = random() % 20;
    for (double& weight : weights) weight = 1 + random() % 5;
    const std::vector<double> fitted = IsotonicRegression(wished, weights);
    ASSERT_EQ(fitted.size(), wished.size());
    for (std::size_t i = 0; i < fitted.size(); ++i) EXPECT_NEAR(fitted[i], FitByMeans(wished, weights, i), 1e-9);
  }
}

TEST(IsotonicRegression, SpacedPositionsKeepGapsAndBounds) {
  const struct {
    const char* name;
    SpacingTask task;
    std::vector<double> expected;
  } cases[] = {{"nothing", {}, {}},
               {"room for all", {{10, 30}, {1, 1}, {0, 5}, {0, 0}, {99, 99}}, {10, 30}},
               {"pushed apart", {{20, 20}, {1, 1}, {0, 10}, {0, 0}, {99, 99}}, {15, 25}},
               {"the heavier moves less", {{20, 20}, {3, 1}, {0, 10}, {0, 0}, {99, 99}}, {17.5, 27.5}},
               {"held by the low end", {{2, 2}, {1, 1}, {0, 10}, {0, 0}, {99, 99}}, {0, 10}},
               {"held by the high end", {{98, 98}, {1, 1}, {0, 10}, {0, 0}, {99, 99}}, {89, 99}},
               {"bound of one holds the other", {{20, 50}, {1, 1}, {0, 10}, {0, 0}, {99, 25}}, {15, 25}},
               {"no room", {{5, 5}, {1, 1}, {0, 10}, {0, 0}, {8, 8}}, {0, 10}}};
  for (const auto& [name, task, expected] : cases) {
    const std::vector<double> positions = SpacedPositions(task);
    ASSERT_EQ(positions.size(), expected.size()) << name;
    for (std::size_t i = 0; i < positions.size(); ++i) EXPECT_NEAR(positions[i], expected[i], 1e-9) << name;
  }
}

}  // namespace

}  // namespace zrcallouts::placement
