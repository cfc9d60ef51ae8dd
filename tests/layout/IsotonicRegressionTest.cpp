#include "layout/placement/IsotonicRegression.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <tuple>

namespace zrcallouts::placement {

namespace {

double Error(const std::vector<double>& wished, const std::vector<double>& weights, const std::vector<double>& fitted) {
  double sum = 0;
  for (std::size_t i = 0; i < wished.size(); ++i) sum += weights[i] * (wished[i] - fitted[i]) * (wished[i] - fitted[i]);
  return sum;
}

/// Tries every way to cut the sequence into runs, each at its mean: one of them is the best fit.
double LeastErrorByCuts(const std::vector<double>& wished, const std::vector<double>& weights) {
  double least = std::numeric_limits<double>::infinity();
  for (unsigned cuts = 0; cuts < 1U << (wished.size() - 1); ++cuts) {
    std::vector<double> fitted;
    for (std::size_t begin = 0; begin < wished.size();) {
      std::size_t end = begin;
      double sum = 0, weight = 0;
      do {
        sum += wished[end] * weights[end];
        weight += weights[end];
      } while ((cuts >> end++ & 1U) == 0 && end < wished.size());
      fitted.insert(fitted.end(), end - begin, sum / weight);
      begin = end;
    }
    if (std::is_sorted(fitted.begin(), fitted.end())) least = std::min(least, Error(wished, weights, fitted));
  }
  return least;
}

TEST(IsotonicRegression, FitsAsWellAsTheBestCutIntoRuns) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    std::vector<double> wished(1 + random() % 9), weights(wished.size());
    for (double& value : wished) value = random() % 20;
    for (double& weight : weights) weight = 1 + random() % 5;
    const std::vector<double> fitted = IsotonicRegression(wished, weights);
    ASSERT_EQ(fitted.size(), wished.size());
    for (std::size_t i = 1; i < fitted.size(); ++i) EXPECT_LE(fitted[i - 1], fitted[i] + 1e-9);
    EXPECT_NEAR(Error(wished, weights, fitted), LeastErrorByCuts(wished, weights), 1e-9);
  }
}

TEST(IsotonicRegression, SpacedPositionsKeepGapsAndBounds) {
  const std::tuple<const char*, SpacingTask, std::vector<double>> cases[] = {
      {"nothing", {}, {}},
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
