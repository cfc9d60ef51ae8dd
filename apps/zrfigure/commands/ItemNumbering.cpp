#include "commands/ItemNumbering.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numbers>
#include <set>
#include <tuple>

#include <zrk/Observable.h>
#include <zrk/illustration/ItemsList.h>

namespace zrfigure {
namespace {

using Path = std::vector<std::uint32_t>;
using zrk::illustration::ItemRow;
using zrk::illustration::ItemsList;

constexpr std::size_t kLast = std::numeric_limits<std::size_t>::max();

struct RankedRow {
  ItemRow row;
  std::size_t rank = kLast;
};

/// The rows in the order of the list.
std::vector<RankedRow> RankRows(const ItemsList& list, const std::vector<unsigned>& order) {
  std::map<unsigned, std::size_t> ranks;
  for (std::size_t i = 0; i < order.size(); ++i) ranks.emplace(order[i], i);
  std::vector<RankedRow> rows;
  for (unsigned id : list.GetItemIds()) {
    RankedRow row;
    if (!list.GetRow(id, row.row)) continue;
    const auto found = ranks.find(id);
    if (found != ranks.end()) row.rank = found->second;
    rows.push_back(std::move(row));
  }
  return rows;
}

void RenumberFlat(ItemsList& list, std::vector<RankedRow> rows, const du::SmartPtr<zrk::Operation>& operation) {
  const std::vector<RankedRow> before = rows;
  std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.rank < b.rank; });
  for (std::size_t i = 0; i < rows.size(); ++i) {
    list.SetItemLabel(rows[i].row.id, before[i].row.values.label, operation);
    list.SetIndex(rows[i].row.id, before[i].row.values.index, operation);
  }
}

/// New paths by old ones. `ranks` holds every prefix with the least rank at or below it; parents come before children.
std::map<Path, Path> PermuteSiblings(const std::map<Path, std::size_t>& ranks) {
  std::vector<std::tuple<Path, std::size_t, Path>> siblings;  // Parent, rank, path.
  for (const auto& [path, rank] : ranks) siblings.emplace_back(Path(path.begin(), path.end() - 1), rank, path);
  std::sort(siblings.begin(), siblings.end());
  std::map<Path, Path> renamed;
  std::uint32_t number = 0;
  const Path* parentBefore = nullptr;
  // Ascending parents: a parent's own new path is known before its children ask for it.
  for (const auto& [parent, rank, path] : siblings) {
    number = parentBefore != nullptr && *parentBefore == parent ? number + 1 : 1;
    parentBefore = &parent;
    Path fresh = parent.empty() ? Path() : renamed.at(parent);
    fresh.push_back(number);
    renamed.emplace(path, std::move(fresh));
  }
  return renamed;
}

void RenumberHierarchical(ItemsList& list, const std::vector<RankedRow>& rows,
                          const du::SmartPtr<zrk::Operation>& operation) {
  std::map<Path, std::size_t> ranks;
  for (const RankedRow& row : rows) {
    for (Path path = row.row.values.hierarchyPath; !path.empty(); path.pop_back()) {
      std::size_t& rank = ranks.emplace(path, kLast).first->second;
      rank = std::min(rank, row.rank);
    }
  }
  const std::map<Path, Path> renamed = PermuteSiblings(ranks);
  std::vector<std::pair<Path, unsigned>> sorted;
  std::vector<unsigned> indices;
  for (const RankedRow& row : rows) {
    const auto found = renamed.find(row.row.values.hierarchyPath);
    sorted.emplace_back(found == renamed.end() ? Path() : found->second, row.row.id);
    indices.push_back(row.row.values.index);
  }
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    list.SetHierarchyIndex(sorted[i].second, sorted[i].first, operation);
    list.SetIndex(sorted[i].second, indices[i], operation);
  }
}

/// Clockwise from `start`, in [0, 2 pi); the page's y axis points down.
double AngleFrom(double start, Point2 middle, Point2 at) {
  const double turn = std::atan2(at.y - middle.y, at.x - middle.x) - start;
  return turn < 0 ? turn + 2 * std::numbers::pi : turn;
}

}  // namespace

std::vector<unsigned> OrderClockwise(std::vector<LabelPlace> labels) {
  Box2 box;
  for (const LabelPlace& label : labels) box.Add(label.at);
  const Point2 middle = box.Centre();
  const double start = std::atan2(box.minY - middle.y, box.minX - middle.x);
  const auto key = [&](const LabelPlace& label) {
    return std::make_tuple(AngleFrom(start, middle, label.at), Distance(label.at, middle), label.item);
  };
  std::sort(labels.begin(), labels.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
  std::vector<unsigned> order;
  std::set<unsigned> met;
  for (const LabelPlace& label : labels) {
    if (label.item != 0 && met.insert(label.item).second) order.push_back(label.item);
  }
  return order;
}

void Renumber(const du::SmartPtr<ItemsList>& list, const std::vector<unsigned>& order,
              const du::SmartPtr<zrk::Operation>& operation) {
  // One update: no label is made from a list that holds a number twice.
  const zrk::Observable::UpdateGroup update(list);
  std::vector<RankedRow> rows = RankRows(*list, order);
  ItemsList::Numbering numbering;
  list->GetNumberingSettings(numbering);
  numbering.hierarchical ? RenumberHierarchical(*list, rows, operation)
                         : RenumberFlat(*list, std::move(rows), operation);
}

}  // namespace zrfigure
