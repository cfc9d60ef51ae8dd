#pragma once
// Minimum-cost assignment of rows to columns.

#include <cmath>
#include <cstddef>
#include <vector>

namespace zrcallouts::placement {

/// Costs of giving each row a column, row by row. Costs are kept as whole numbers, which doubles add and compare
/// exactly up to 2^53 and, unlike integers of that size, several at a time on every processor.
class CostMatrix {
public:
  CostMatrix(std::size_t rows, std::size_t columns) : rows_(rows), columns_(columns), cost_(rows * columns) {}

  [[nodiscard]] std::size_t Rows() const { return rows_; }
  [[nodiscard]] std::size_t Columns() const { return columns_; }
  [[nodiscard]] double At(std::size_t row, std::size_t column) const { return cost_[row * columns_ + column]; }
  [[nodiscard]] const double* Row(std::size_t row) const { return cost_.data() + row * columns_; }
  /// Rounds `cost` to a whole number.
  void Set(std::size_t row, std::size_t column, double cost) { cost_[row * columns_ + column] = std::round(cost); }

private:
  std::size_t rows_, columns_;
  std::vector<double> cost_;
};

/// Who gets what.
struct Assignment {
  std::vector<std::size_t> columnOfRow;
  std::vector<double> columnPotential;  ///< What a column costs beyond its entries because others want it, at most 0.
};

/// An assignment of least total cost that uses no column twice. Needs at least as many columns as rows. For a square
/// matrix that differs little from one solved before, that one's potentials in `start` save most of the work.
[[nodiscard]] Assignment MinCostAssignment(const CostMatrix& costs, std::vector<double> start = {});

}  // namespace zrcallouts::placement
