#include "layout/placement/IsotonicRegression.h"

#include <algorithm>
#include <cstddef>

namespace zrcallouts::placement {

std::vector<double> IsotonicRegression(const std::vector<double>& wished, const std::vector<double>& weights) {
  struct Pool {
    double sum, weight;
    std::size_t count;
    [[nodiscard]] double Mean() const { return sum / weight; }
  };
  std::vector<Pool> pools;
  for (std::size_t i = 0; i < wished.size(); ++i) {
    pools.push_back({wished[i] * weights[i], weights[i], 1});
    while (pools.size() > 1 && pools[pools.size() - 2].Mean() > pools.back().Mean()) {
      const Pool last = pools.back();
      pools.pop_back();
      pools.back().sum += last.sum;
      pools.back().weight += last.weight;
      pools.back().count += last.count;
    }
  }
  std::vector<double> fitted;
  for (const Pool& pool : pools) fitted.insert(fitted.end(), pool.count, pool.Mean());
  return fitted;
}

std::vector<double> SpacedPositions(const SpacingTask& task) {
  // Without the room that the gaps take up the positions need only be non-decreasing. The bounds are made
  // non-decreasing as well, and then clamping keeps the order.
  const std::size_t count = task.wished.size();
  std::vector<double> offset(count, 0), reduced(task.wished), lowest(task.lowest), highest(task.highest);
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) offset[i] = offset[i - 1] + task.gaps[i];
    reduced[i] -= offset[i];
    lowest[i] -= offset[i];
    highest[i] -= offset[i];
    if (i > 0) lowest[i] = std::max(lowest[i], lowest[i - 1]);
  }
  for (std::size_t i = count; i-- > 1;) highest[i - 1] = std::min(highest[i - 1], highest[i]);
  std::vector<double> fitted = IsotonicRegression(reduced, task.weights);
  for (std::size_t i = 0; i < count; ++i) fitted[i] = std::max(lowest[i], std::min(fitted[i], highest[i])) + offset[i];
  return fitted;
}

}  // namespace zrcallouts::placement
