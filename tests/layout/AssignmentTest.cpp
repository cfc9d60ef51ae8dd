#include "layout/placement/Assignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <set>

namespace zrcallouts::placement {

namespace {

double Total(const CostMatrix& costs, const std::vector<std::size_t>& columnOfRow) {
  double total = 0;
  for (std::size_t row = 0; row < costs.Rows(); ++row) total += costs.At(row, columnOfRow[row]);
  return total;
}

double LeastByPermutation(const CostMatrix& costs) {
  std::vector<std::size_t> columns(costs.Columns());
  std::iota(columns.begin(), columns.end(), std::size_t{0});
  double least = std::numeric_limits<double>::infinity();
  do least = std::min(least, Total(costs, columns));
  while (std::next_permutation(columns.begin(), columns.end()));
  return least;
}

TEST(Assignment, CostsAsLittleAsTheBestPermutation) {
  EXPECT_TRUE(MinCostAssignment(CostMatrix(0, 3)).columnOfRow.empty());
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    const std::size_t columns = 1 + random() % 7, rows = 1 + random() % columns;
    CostMatrix costs(rows, columns);
    for (std::size_t row = 0; row < rows; ++row)  // few different costs make many ties
      for (std::size_t column = 0; column < columns; ++column)
        costs.Set(row, column, random() % (round % 2 == 0 ? 4 : 1000));
    const std::vector<std::size_t> columnOfRow = MinCostAssignment(costs).columnOfRow;
    ASSERT_EQ(std::set<std::size_t>(columnOfRow.begin(), columnOfRow.end()).size(), rows);
    EXPECT_EQ(Total(costs, columnOfRow), LeastByPermutation(costs)) << rows << " x " << columns;
  }
}

TEST(Assignment, PotentialsProveTheMinimumAlsoFromAWarmStart) {
  std::mt19937 random(8);
  CostMatrix costs(60, 60);
  std::vector<double> potential;
  for (int round = 0; round < 40; ++round) {  // costs begin with many ties, and lose them
    for (std::size_t cell = 0; cell < 60 * 60; ++cell)
      costs.Set(cell / 60, cell % 60, costs.At(cell / 60, cell % 60) + random() % (10 + 50 * round));
    const Assignment warm = MinCostAssignment(costs, potential);
    EXPECT_EQ(std::set<std::size_t>(warm.columnOfRow.begin(), warm.columnOfRow.end()).size(), 60U);
    potential = warm.columnPotential;
    // Every row has the column that is cheapest for it at the potentials: nothing can be better.
    for (std::size_t cell = 0; cell < 60 * 60; ++cell) {
      const std::size_t row = cell / 60, own = warm.columnOfRow[row];
      ASSERT_LE(costs.At(row, own) - potential[own], costs.At(row, cell % 60) - potential[cell % 60]);
    }
  }
}

}  // namespace

}  // namespace zrcallouts::placement
