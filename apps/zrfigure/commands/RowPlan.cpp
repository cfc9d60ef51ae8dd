#include "commands/RowPlan.h"

#include <set>

namespace zrfigure {
namespace {

/// Gathers rows in order of first appearance of their products.
class RowCollector {
public:
  explicit RowCollector(const OccurrenceTree& tree) : tree_(tree), rowOfProduct_(tree.GetModel().products.size(), -1) {}

  /// Index of the product's row, -1 when it has none yet.
  [[nodiscard]] int Find(int product) const { return rowOfProduct_[product]; }

  /// Enters an occurrence; `path` is used when it opens a row.
  void Enter(int occurrence, std::vector<std::uint32_t> path) {
    const int product = tree_.GetModel().occurrences[occurrence].product;
    if (rowOfProduct_[product] < 0) {
      rowOfProduct_[product] = static_cast<int>(rows_.size());
      rows_.push_back({product, std::move(path), {}});
    }
    rows_[rowOfProduct_[product]].occurrences.push_back(occurrence);
  }

  [[nodiscard]] const std::vector<PlannedRow>& Rows() const { return rows_; }

private:
  const OccurrenceTree& tree_;
  std::vector<int> rowOfProduct_;
  std::vector<PlannedRow> rows_;
};

std::set<int> TargetsAndAncestors(const OccurrenceTree& tree, const std::vector<int>& selected) {
  const auto& occurrences = tree.GetModel().occurrences;
  std::set<int> wanted;
  for (int occurrence : selected) {
    const int target = tree.CalloutTarget(occurrence);
    wanted.insert(target);
    for (int at = occurrences[target].parent; at >= 0 && occurrences[at].parent >= 0; at = occurrences[at].parent) {
      if (!wanted.insert(at).second) break;
    }
  }
  return wanted;
}

}  // namespace

std::vector<PlannedRow> PlanFlatRows(const OccurrenceTree& tree, const std::vector<int>& selected) {
  RowCollector collector(tree);
  std::set<int> entered;
  for (int occurrence : selected) {
    const int target = tree.CalloutTarget(occurrence);
    if (!entered.insert(target).second) continue;
    collector.Enter(target, {static_cast<std::uint32_t>(collector.Rows().size() + 1)});
  }
  return collector.Rows();
}

std::vector<PlannedRow> PlanHierarchicalRows(const OccurrenceTree& tree, const std::vector<int>& selected) {
  const std::set<int> wanted = TargetsAndAncestors(tree, selected);
  RowCollector collector(tree);
  std::vector<std::uint32_t> childCount(tree.GetModel().products.size() + 1, 0);
  const std::size_t top = tree.GetModel().products.size();
  for (int occurrence : tree.DepthFirst()) {
    if (wanted.count(occurrence) == 0) continue;
    const int parent = tree.GetModel().occurrences[occurrence].parent;
    const int parentProduct = parent < 0 ? -1 : tree.GetModel().occurrences[parent].product;
    const int parentRow = parentProduct < 0 ? -1 : collector.Find(parentProduct);
    const std::size_t counter = parentRow < 0 ? top : static_cast<std::size_t>(parentProduct);
    std::vector<std::uint32_t> path;
    if (collector.Find(tree.GetModel().occurrences[occurrence].product) < 0) {
      if (parentRow >= 0) path = collector.Rows()[parentRow].path;
      path.push_back(++childCount[counter]);
    }
    collector.Enter(occurrence, std::move(path));
  }
  return collector.Rows();
}

std::string JoinPath(const std::vector<std::uint32_t>& path) {
  std::string text;
  for (std::uint32_t number : path) text += (text.empty() ? "" : ".") + std::to_string(number);
  return text;
}

}  // namespace zrfigure
