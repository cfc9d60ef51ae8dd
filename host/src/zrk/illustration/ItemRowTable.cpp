#include <zrk/illustration/ItemRowTable.h>

#include <algorithm>
#include <optional>

#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>

namespace zrk::illustration {

namespace {

const ComponentNode* GetNode(const SbomInstance& instance) {
  const auto ebom = instance.GetEbomInstance();
  return ebom ? ebom->GetComponentNode().Get() : nullptr;
}

/// The number that the label consists of; nothing for any other text and for numbers beyond nine digits.
std::optional<unsigned> ParseNumber(const std::string& label) {
  constexpr std::size_t kMostDigits = 9;
  const bool digits = std::all_of(label.begin(), label.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (label.empty() || label.size() > kMostDigits || !digits) return std::nullopt;
  return static_cast<unsigned>(std::stoul(label));
}

}  // namespace

const ItemRow* ItemRowTable::Find(unsigned itemId) const {
  const auto row = rows_.find(itemId);
  return row == rows_.end() ? nullptr : &row->second;
}

unsigned ItemRowTable::FindItemOf(const SbomInstance* instance) const {
  const auto item = itemByInstance_.find(instance);
  return item == itemByInstance_.end() ? 0 : item->second;
}

unsigned ItemRowTable::FindMatching(const SbomInstance& instance) const {
  if (const unsigned own = FindItemOf(&instance)) return own;
  const auto items = instanceCountByNode_.find(GetNode(instance));
  return items == instanceCountByNode_.end() ? 0 : items->second.begin()->first;
}

std::vector<unsigned> ItemRowTable::GetIds() const {
  std::vector<unsigned> ids;
  ids.reserve(idsByIndex_.size());
  for (const auto& entry : idsByIndex_) ids.push_back(entry.second);
  return ids;
}

unsigned ItemRowTable::GetNextIndex() const {
  return idsByIndex_.empty() ? 1 : idsByIndex_.rbegin()->first + 1;
}

unsigned ItemRowTable::GetNextNumber() const {
  return numbers_.empty() ? 1 : *numbers_.rbegin() + 1;
}

bool ItemRowTable::Insert(const ItemRow& row) {
  if (row.id == 0) return false;
  const auto [place, inserted] = rows_.emplace(row.id, row);
  if (!inserted) return false;
  place->second.instances.clear();
  IndexValues(row.id, row.values);
  for (const auto& instance : row.instances) AddInstance(row.id, instance);
  return true;
}

bool ItemRowTable::Take(unsigned itemId, ItemRow& row) {
  const auto place = rows_.find(itemId);
  if (place == rows_.end()) return false;
  for (const auto& instance : place->second.instances) Unindex(itemId, instance.Get());
  UnindexValues(itemId, place->second.values);
  row = std::move(place->second);
  rows_.erase(place);
  return true;
}

bool ItemRowTable::AddInstance(unsigned itemId, const du::SmartPtr<SbomInstance>& instance) {
  const auto row = rows_.find(itemId);
  if (row == rows_.end() || !instance || FindItemOf(instance.Get()) != 0) return false;
  row->second.instances.insert(instance);
  Index(itemId, instance.Get());
  return true;
}

bool ItemRowTable::RemoveInstance(unsigned itemId, const du::SmartPtr<SbomInstance>& instance) {
  const auto row = rows_.find(itemId);
  if (row == rows_.end() || row->second.instances.erase(instance) == 0) return false;
  Unindex(itemId, instance.Get());
  return true;
}

bool ItemRowTable::SetValues(unsigned itemId, const ItemValues& values) {
  const auto row = rows_.find(itemId);
  if (row == rows_.end()) return false;
  UnindexValues(itemId, row->second.values);
  row->second.values = values;
  IndexValues(itemId, values);
  return true;
}

bool ItemRowTable::SetIndicated(unsigned itemId, bool indicated) {
  const auto row = rows_.find(itemId);
  if (row == rows_.end() || row->second.indicated == indicated) return false;
  row->second.indicated = indicated;
  return true;
}

void ItemRowTable::Index(unsigned itemId, const SbomInstance* instance) {
  itemByInstance_.emplace(instance, itemId);
  if (const ComponentNode* node = GetNode(*instance)) ++instanceCountByNode_[node][itemId];
}

void ItemRowTable::Unindex(unsigned itemId, const SbomInstance* instance) {
  itemByInstance_.erase(instance);
  const auto items = instanceCountByNode_.find(GetNode(*instance));
  if (items == instanceCountByNode_.end()) return;
  const auto count = items->second.find(itemId);
  if (--count->second == 0) items->second.erase(count);
  if (items->second.empty()) instanceCountByNode_.erase(items);
}

void ItemRowTable::IndexValues(unsigned itemId, const ItemValues& values) {
  idsByIndex_.emplace(values.index, itemId);
  if (const auto number = ParseNumber(values.label)) numbers_.insert(*number);
}

void ItemRowTable::UnindexValues(unsigned itemId, const ItemValues& values) {
  idsByIndex_.erase({values.index, itemId});
  if (const auto number = ParseNumber(values.label)) numbers_.erase(numbers_.find(*number));
}

}  // namespace zrk::illustration
