// Callouts in the order of their items.
#include <zrannotations/Callout.h>
#include <zritemlist/ItemList.h>
#include <zrk/illustration/ItemsList.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrk::illustration::ItemsList;

namespace zrcallouts {

namespace {

using Path = std::vector<std::uint32_t>;

// A callout's place in the list, asked once; flat positions are paths of one step. Nothing for a callout without item.
using SortKey = std::optional<Path>;

SortKey KeyOf(const du::SmartPtr<Callout>& callout, const ItemsList& items, bool hierarchical) {
  const auto itemId = hostlayer::ItemIdOf(callout);
  if (!itemId) return std::nullopt;
  return hierarchical ? items.GetHierarchyIndex(*itemId) : Path{items.GetIndex(*itemId)};
}

// The scan goes on after a smaller position: (1, 5) before (2, 3) counts as out of order. For flat positions this is
// the plain comparison.
bool IsOutOfOrder(const Path& first, const Path& second) {
  const std::size_t shorter = std::min(first.size(), second.size());
  for (std::size_t level = 0; level < shorter; ++level) {
    if (first[level] > second[level]) return true;
    if (first[level] == second[level] && first.size() > second.size()) return true;
  }
  return false;
}

}  // namespace

// The exchanges are the contract, not only their aim: the hierarchical rule is no ordering, and figures rely on the
// sequence it gives. Quadratic in the number of callouts of one figure.
void Callouts::Sort(std::vector<du::SmartPtr<Callout>>& callouts) const {
  const auto items = itemList_ ? itemList_->GetZrkItemList() : nullptr;
  if (callouts.empty() || !items) return;
  ItemsList::Numbering numbering;
  items->GetNumberingSettings(numbering);
  if (callouts.size() == 1) return;
  const bool hierarchical = hostlayer::NumbersHierarchically(numbering);
  std::vector<SortKey> keys;
  keys.reserve(callouts.size());
  for (const auto& callout : callouts) keys.push_back(KeyOf(callout, *items, hierarchical));
  for (std::size_t i = 0; i + 1 < callouts.size(); ++i) {
    for (std::size_t j = i + 1; j < callouts.size(); ++j) {
      if (!keys[i] || !keys[j] || !IsOutOfOrder(*keys[i], *keys[j])) continue;
      std::swap(callouts[i], callouts[j]);
      std::swap(keys[i], keys[j]);
    }
  }
}

}  // namespace zrcallouts
