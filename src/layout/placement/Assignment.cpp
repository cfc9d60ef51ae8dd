// Shortest augmenting paths over reduced costs (Jonker and Volgenant: A shortest augmenting path algorithm for dense
// and sparse linear assignment problems, 1987). Contested columns first get dearer by what their takers would lose with
// the second best. Each row that is still free then starts a Dijkstra search over the columns for the cheapest chain of
// moves that ends in a free column; the potentials keep all reduced costs non-negative. A search looks at the cheapest
// few columns of a row only. No other column can be nearer than the row's bound, the dearest of these few, because
// column potentials are never positive; the rest of the row is looked at when the search gets that far, which is
// seldom. So the result is exact, at a fraction of the work of full rows. Cost: rows * rows * columns at worst; a
// thousand leaders take some tens of milliseconds.
#include "layout/placement/Assignment.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <queue>
#include <tuple>

namespace zrcallouts::placement {

namespace {

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::size_t kCheapFew = 64;

class AssignmentSolver {
public:
  explicit AssignmentSolver(const CostMatrix& costs);

  std::vector<std::size_t> Solve();

private:
  /// A column reached by a search, or with `column` == kNone the rest of a row.
  struct Event {
    double distance;
    std::size_t column, row;
    friend bool operator>(const Event& a, const Event& b) {
      return std::tie(a.distance, a.column, a.row) > std::tie(b.distance, b.column, b.row);
    }
  };
  struct TwoBest {
    std::size_t column = kNone;
    double least = kInfinity, second = kInfinity;
    void Offer(std::size_t candidate, double cost);
  };

  void FindCheapFew();
  [[nodiscard]] TwoBest FindTwoBest(std::size_t row) const;
  void ReduceRows();
  void Augment(std::size_t freeRow);
  void Leave(std::size_t row, double distance);
  void Reach(std::size_t row, std::size_t column, double base);
  void Finish(std::size_t freeRow, std::size_t sink);

  const CostMatrix& costs_;
  std::size_t few_;                   ///< Columns that a search looks at first, per row.
  std::vector<std::uint32_t> cheap_;  ///< The cheapest columns, few_ a row.
  std::vector<double> bound_;         ///< By row: no column outside the cheap ones costs less.
  std::vector<double> rowPotential_, columnPotential_;
  std::vector<std::size_t> columnOfRow_, rowOfColumn_;
  std::vector<double> distance_;          ///< By column: length of the shortest path found so far.
  std::vector<std::size_t> predecessor_;  ///< By column: row before it on that path.
  std::vector<std::size_t> touched_;      ///< Columns with a distance.
  std::vector<std::size_t> settled_;      ///< Columns with a final distance.
  std::priority_queue<Event, std::vector<Event>, std::greater<>> events_;
};

AssignmentSolver::AssignmentSolver(const CostMatrix& costs)
    : costs_(costs),
      few_(std::min(kCheapFew, costs.Columns())),
      cheap_(costs.Rows() * few_),
      bound_(costs.Rows(), kInfinity),
      rowPotential_(costs.Rows(), 0),
      columnPotential_(costs.Columns(), 0),
      columnOfRow_(costs.Rows(), kNone),
      rowOfColumn_(costs.Columns(), kNone),
      distance_(costs.Columns(), kInfinity),
      predecessor_(costs.Columns(), kNone) {}

void AssignmentSolver::FindCheapFew() {
  std::vector<std::uint32_t> columns(costs_.Columns());
  for (std::size_t row = 0; row < costs_.Rows(); ++row) {
    const double* const cost = costs_.Row(row);
    const auto cheaper = [cost](std::uint32_t a, std::uint32_t b) {
      return std::tie(cost[a], a) < std::tie(cost[b], b);
    };
    std::iota(columns.begin(), columns.end(), 0U);
    const auto last = columns.begin() + static_cast<std::ptrdiff_t>(few_) - 1;
    std::nth_element(columns.begin(), last, columns.end(), cheaper);
    std::copy(columns.begin(), last + 1, cheap_.begin() + static_cast<std::ptrdiff_t>(row * few_));
    if (few_ < costs_.Columns()) bound_[row] = cost[*last];
  }
}

void AssignmentSolver::TwoBest::Offer(std::size_t candidate, double cost) {
  if (cost < least) {
    second = least;
    least = cost;
    column = candidate;
  } else if (cost < second) {
    second = cost;
  }
}

AssignmentSolver::TwoBest AssignmentSolver::FindTwoBest(std::size_t row) const {
  const double* const cost = costs_.Row(row);
  TwoBest best;
  for (std::size_t k = row * few_; k < (row + 1) * few_; ++k)
    best.Offer(cheap_[k], cost[cheap_[k]] - columnPotential_[cheap_[k]]);
  if (best.second <= bound_[row]) return best;
  best = {};
  for (std::size_t column = 0; column < costs_.Columns(); ++column)
    best.Offer(column, cost[column] - columnPotential_[column]);
  return best;
}

/// Augmenting row reduction. Bounded, since rows may displace each other for long.
void AssignmentSolver::ReduceRows() {
  std::vector<std::size_t> queue(costs_.Rows());
  std::iota(queue.begin(), queue.end(), std::size_t{0});
  std::size_t budget = 16 * costs_.Rows();
  for (std::size_t head = 0; head < queue.size() && budget > 0; ++head, --budget) {
    const std::size_t row = queue[head];
    const TwoBest best = FindTwoBest(row);
    rowPotential_[row] = costs_.Columns() > 1 ? best.second : best.least;
    columnPotential_[best.column] -= rowPotential_[row] - best.least;
    if (const std::size_t displaced = rowOfColumn_[best.column]; displaced != kNone) {
      columnOfRow_[displaced] = kNone;
      queue.push_back(displaced);
    }
    rowOfColumn_[best.column] = row;
    columnOfRow_[row] = best.column;
  }
}

void AssignmentSolver::Reach(std::size_t row, std::size_t column, double base) {
  const double length = base + costs_.Row(row)[column] - columnPotential_[column];
  if (length >= distance_[column]) return;
  if (distance_[column] == kInfinity) touched_.push_back(column);
  distance_[column] = length;
  predecessor_[column] = row;
  events_.push({length, column, row});
}

void AssignmentSolver::Leave(std::size_t row, double distance) {
  const double base = distance - rowPotential_[row];
  for (std::size_t k = row * few_; k < (row + 1) * few_; ++k) Reach(row, cheap_[k], base);
  if (few_ < costs_.Columns()) events_.push({base + bound_[row], kNone, row});
}

void AssignmentSolver::Augment(std::size_t freeRow) {
  for (const std::size_t column : touched_) distance_[column] = kInfinity;
  touched_.clear();
  settled_.clear();
  events_ = {};
  Leave(freeRow, 0);
  for (;;) {
    const Event event = events_.top();
    events_.pop();
    if (event.column == kNone) {
      const double base = event.distance - bound_[event.row];
      for (std::size_t column = 0; column < costs_.Columns(); ++column) Reach(event.row, column, base);
      continue;
    }
    if (event.distance > distance_[event.column]) continue;
    if (rowOfColumn_[event.column] == kNone) return Finish(freeRow, event.column);
    settled_.push_back(event.column);
    Leave(rowOfColumn_[event.column], event.distance);
  }
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

std::vector<std::size_t> AssignmentSolver::Solve() {
  FindCheapFew();
  ReduceRows();
  for (std::size_t row = 0; row < costs_.Rows(); ++row) {
    if (columnOfRow_[row] != kNone) continue;
    rowPotential_[row] = FindTwoBest(row).least;
    Augment(row);
  }
  return columnOfRow_;
}

}  // namespace

std::vector<std::size_t> MinCostAssignment(const CostMatrix& costs) {
  if (costs.Rows() == 0) return {};
  return AssignmentSolver(costs).Solve();
}

}  // namespace zrcallouts::placement
