#include "layout/placement/Assignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <set>

namespace zrcallouts::placement {

namespace {

CostMatrix RandomCosts(std::size_t rows, std::size_t columns, std::mt19937& random, unsigned most) {
  CostMatrix costs(rows, columns);
  for (std::size_t row = 0; row < rows; ++row)
    for (std::size_t column = 0; column < columns; ++column) costs.Set(row, column, random() % most);
  return costs;
}

double Total(const CostMatrix& costs, const std::vector<std::size_t>& columnOfRow) {
  double total = 0;
  for (std::size_t row = 0; row < columnOfRow.size(); ++row) total += costs.At(row, columnOfRow[row]);
  return total;
}

double LeastByPermutation(const CostMatrix& costs) {
  std::vector<std::size_t> columns(costs.Columns());
  std::iota(columns.begin(), columns.end(), std::size_t{0});
  double least = std::numeric_limits<double>::infinity();
  do {
    least =
        std::min(least, Total(costs, {columns.begin(), columns.begin() + static_cast<std::ptrdiff_t>(costs.Rows())}));
  } while (std::next_permutation(columns.begin(), columns.end()));
  return least;
}

TEST(Assignment, CostsAsLittleAsTheBestPermutation) {
  EXPECT_TRUE(MinCostAssignment(CostMatrix(0, 3)).columnOfRow.empty());
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    const std::size_t columns = 1 + random() % 7, rows = 1 + random() % columns;
    // Few different costs make many ties.
    const CostMatrix costs = RandomCosts(rows, columns, random, round % 2 == 0 ? 4 : 1000);
    const Assignment assignment = MinCostAssignment(costs);
    const std::set<std::size_t> distinct(assignment.columnOfRow.begin(), assignment.columnOfRow.end());
    ASSERT_EQ(distinct.size(), rows);
    EXPECT_EQ(Total(costs, assignment.columnOfRow), LeastByPermutation(costs)) << rows << " x " << columns;
  }
}

TEST(Assignment, PotentialsProveTheMinimumAlsoFromAWarmStart) {
  std::mt19937 random(8);
  CostMatrix costs = RandomCosts(60, 60, random, 100000);
  Assignment assignment = MinCostAssignment(costs);
  for (int round = 0; round < 5; ++round) {
    for (std::size_t row = 0; row < 60; ++row)
      for (std::size_t column = 0; column < 60; ++column)
        costs.Set(row, column, costs.At(row, column) + random() % 2000);
    const Assignment warm = MinCostAssignment(costs, assignment.columnPotential);
    EXPECT_EQ(Total(costs, warm.columnOfRow), Total(costs, MinCostAssignment(costs).columnOfRow));
    // Every row has the column that is cheapest for it at the potentials: nothing can be better.
    for (std::size_t row = 0; row < 60; ++row)
      for (std::size_t column = 0; column < 60; ++column)
        ASSERT_LE(costs.At(row, warm.columnOfRow[row]) - warm.columnPotential[warm.columnOfRow[row]],
                  costs.At(row, column) - warm.columnPotential[column]);
    assignment = warm;
  }
}

}  // namespace

}  // namespace zrcallouts::placement
