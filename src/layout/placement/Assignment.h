#pragma once
// Minimum-cost assignment of rows to columns.

#include <cstddef>
#include <vector>

namespace zrcallouts::placement {

/// Costs of giving each row a column, row by row.
class CostMatrix {
public:
  CostMatrix(std::size_t rows, std::size_t columns) : rows_(rows), columns_(columns), cost_(rows * columns) {}

  [[nodiscard]] std::size_t Rows() const { return rows_; }
  [[nodiscard]] std::size_t Columns() const { return columns_; }
  [[nodiscard]] double& At(std::size_t row, std::size_t column) { return cost_[row * columns_ + column]; }
  [[nodiscard]] const double* Row(std::size_t row) const { return cost_.data() + row * columns_; }

private:
  std::size_t rows_, columns_;
  std::vector<double> cost_;
};

/// The column of each row in an assignment of least total cost, no column twice. Needs at least as many columns as
/// rows.
[[nodiscard]] std::vector<std::size_t> MinCostAssignment(const CostMatrix& costs);

}  // namespace zrcallouts::placement
