// Shortest augmenting paths over reduced costs (Jonker and Volgenant: A shortest augmenting path algorithm for dense
// and sparse linear assignment problems, 1987). Contested columns first get dearer by what their takers would lose with
// the second best, which settles some rows. Each row that is still free starts a Dijkstra search over the columns for
// the cheapest chain of moves that ends in a free column; the potentials keep all reduced costs non-negative. Cost:
// rows * rows * columns at worst; for distances in the plane a search ends after a small share of the rows.
#include "layout/placement/Assignment.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace zrcallouts::placement {

namespace {

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class AssignmentSolver {
public:
  AssignmentSolver(const CostMatrix& costs, std::vector<double> potential)
      : costs_(costs),
        rowPotential_(costs.Rows(), 0),
        columnPotential_(std::move(potential)),
        columnOfRow_(costs.Rows(), kNone),
        rowOfColumn_(costs.Columns(), kNone),
        distance_(costs.Columns()),
        open_(costs.Columns()),
        predecessor_(costs.Columns()) {}

  Assignment Solve();

private:
  struct TwoBest {
    std::size_t column = kNone;
    double least = kInfinity, second = kInfinity;
  };

  [[nodiscard]] TwoBest FindTwoBest(std::size_t row) const;
  void ReduceRows();
  void Augment(std::size_t freeRow);
  void Leave(std::size_t row, double distance);
  [[nodiscard]] std::size_t Nearest() const;
  void Finish(std::size_t freeRow, std::size_t sink);

  const CostMatrix& costs_;
  std::vector<double> rowPotential_, columnPotential_;
  std::vector<std::size_t> columnOfRow_, rowOfColumn_;
  std::vector<double> distance_;          ///< By column: length of the shortest path found so far.
  std::vector<double> open_;              ///< The same while that may still shrink, infinite afterwards.
  std::vector<std::size_t> predecessor_;  ///< By column: row before it on that path.
  std::vector<std::size_t> settled_;      ///< Columns whose distance is final.
};

AssignmentSolver::TwoBest AssignmentSolver::FindTwoBest(std::size_t row) const {
  const double* const cost = costs_.Row(row);
  TwoBest best;
  for (std::size_t column = 0; column < costs_.Columns(); ++column) {
    const double reduced = cost[column] - columnPotential_[column];
    if (reduced >= best.second) continue;
    if (reduced < best.least) {
      best = {column, reduced, best.least};
    } else {
      best.second = reduced;
    }
  }
  return best;
}

/// Augmenting row reduction. Bounded, since rows may displace each other for long.
void AssignmentSolver::ReduceRows() {
  std::vector<std::size_t> queue(costs_.Rows());
  std::iota(queue.begin(), queue.end(), std::size_t{0});
  const std::size_t budget = 8 * costs_.Rows();
  for (std::size_t head = 0; head < queue.size() && head < budget; ++head) {
    const std::size_t row = queue[head];
    const TwoBest best = FindTwoBest(row);
    if (costs_.Columns() > 1) columnPotential_[best.column] -= best.second - best.least;
    if (const std::size_t displaced = rowOfColumn_[best.column]; displaced != kNone) {
      columnOfRow_[displaced] = kNone;
      queue.push_back(displaced);
    }
    rowOfColumn_[best.column] = row;
    columnOfRow_[row] = best.column;
  }
  for (std::size_t row = 0; row < costs_.Rows(); ++row) rowPotential_[row] = FindTwoBest(row).least;
}

void AssignmentSolver::Leave(std::size_t row, double distance) {
  const double* const cost = costs_.Row(row);
  const double base = distance - rowPotential_[row];
  const double* const potential = columnPotential_.data();
  double *const best = distance_.data(), *const open = open_.data();
  std::size_t* const predecessor = predecessor_.data();
  // A settled column is never improved, so it stays infinite in `open`.
  for (std::size_t column = 0, count = costs_.Columns(); column < count; ++column) {
    const double length = base + cost[column] - potential[column];
    const bool shorter = length < best[column];
    best[column] = shorter ? length : best[column];
    open[column] = shorter ? length : open[column];
    predecessor[column] = shorter ? row : predecessor[column];
  }
}

std::size_t AssignmentSolver::Nearest() const {
  // Four chains of minima, since one chain would wait for its own last result.
  double least[4] = {kInfinity, kInfinity, kInfinity, kInfinity};
  std::size_t column = 0;
  for (; column + 4 <= open_.size(); column += 4)
    for (std::size_t k = 0; k < 4; ++k) least[k] = open_[column + k] < least[k] ? open_[column + k] : least[k];
  for (; column < open_.size(); ++column) least[0] = std::min(least[0], open_[column]);
  const double nearest = *std::min_element(least, least + 4);
  return static_cast<std::size_t>(std::find(open_.begin(), open_.end(), nearest) - open_.begin());
}

void AssignmentSolver::Augment(std::size_t freeRow) {
  std::fill(distance_.begin(), distance_.end(), kInfinity);
  std::fill(open_.begin(), open_.end(), kInfinity);
  settled_.clear();
  Leave(freeRow, 0);
  std::size_t column = Nearest();
  while (rowOfColumn_[column] != kNone) {
    settled_.push_back(column);
    open_[column] = kInfinity;
    Leave(rowOfColumn_[column], distance_[column]);
    column = Nearest();
  }
  Finish(freeRow, column);
}

void AssignmentSolver::Finish(std::size_t freeRow, std::size_t sink) {
  const double length = distance_[sink];
  rowPotential_[freeRow] += length;
  for (const std::size_t column : settled_) {
    rowPotential_[rowOfColumn_[column]] += length - distance_[column];
    columnPotential_[column] -= length - distance_[column];
  }
  for (std::size_t column = sink;;) {
    const std::size_t row = predecessor_[column];
    rowOfColumn_[column] = row;
    std::swap(columnOfRow_[row], column);
    if (row == freeRow) break;
  }
}

Assignment AssignmentSolver::Solve() {
  ReduceRows();
  for (std::size_t row = 0; row < costs_.Rows(); ++row)
    if (columnOfRow_[row] == kNone) Augment(row);
  return {columnOfRow_, columnPotential_};
}

}  // namespace

Assignment MinCostAssignment(const CostMatrix& costs, std::vector<double> start) {
  if (costs.Rows() == 0) return {};
  // With columns to spare a start other than 0 could leave a free column with a potential, and so miss the minimum.
  if (costs.Rows() != costs.Columns() || start.size() != costs.Columns()) start.assign(costs.Columns(), 0);
  return AssignmentSolver(costs, std::move(start)).Solve();
}

}  // namespace zrcallouts::placement
