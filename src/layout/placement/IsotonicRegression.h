#pragma once
// Least-squares fits in a fixed order.

#include <vector>

namespace zrcallouts::placement {

/// The non-decreasing sequence with the least weighted sum of squared distances to `wished`, by pooling adjacent
/// violators: linear time. Weights are positive, one a value.
/// (Barlow, Bartholomew, Bremner, Brunk: Statistical inference under order restrictions, 1972.)
[[nodiscard]] std::vector<double> IsotonicRegression(const std::vector<double>& wished,
                                                     const std::vector<double>& weights);

/// Positions that are wished in a row, and what they have to keep.
struct SpacingTask {
  std::vector<double> wished, weights;
  std::vector<double> gaps;             ///< Least distance to the predecessor; gaps[0] counts for nothing.
  std::vector<double> lowest, highest;  ///< Bounds of each position.
};

/// Positions near the wished ones in the sense of least squares that keep the gaps, and the bounds where these leave
/// room for the gaps; else a bound at the high end is passed.
[[nodiscard]] std::vector<double> SpacedPositions(const SpacingTask& task);

}  // namespace zrcallouts::placement
