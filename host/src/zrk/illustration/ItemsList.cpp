#include <zrk/illustration/ItemsList.h>

#include <algorithm>
#include <map>
#include <utility>

#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/ItemsListObserver.h>

#include "ItemValuesOperationStep.h"

namespace zrk::illustration {

namespace {

using Kind = ItemNotification::Kind;

void Send(const ItemNotification& notification, ItemsListObserver& observer) {
  switch (notification.kind) {
    case Kind::Added:
      return observer.OnItemAdded(notification.itemId);
    case Kind::Removed:
      return observer.OnItemRemoved(notification.itemId);
    case Kind::ContentChanged:
      return observer.OnItemContentChanged(notification.itemId, notification.added, notification.removed);
    case Kind::Indicated:
      return observer.OnItemIndicated(notification.itemId, notification.indicated);
    case Kind::ListCleared:
      return observer.OnListCleared();
  }
}

std::string JoinPath(const std::vector<std::uint32_t>& path) {
  std::string text;
  for (const std::uint32_t position : path) text += (text.empty() ? "" : ".") + std::to_string(position);
  return text;
}

}  // namespace

ItemsList::ItemsList() = default;

ItemsList::~ItemsList() = default;

void ItemsList::RegisterObserver(const du::SmartPtr<ItemsListObserver>& observer) {
  observers_.Register(observer);
}

void ItemsList::UnregisterObserver(const du::SmartPtr<ItemsListObserver>& observer) {
  observers_.Unregister(observer);
}

std::size_t ItemsList::GetObserverCount() const {
  return observers_.GetCount();
}

template <class T>
T ItemsList::GetValue(unsigned itemId, T ItemValues::*value) const {
  const dp::MutexGuard guard(mutex_);
  const ItemRow* row = rows_.Find(itemId);
  return row ? row->values.*value : T();
}

unsigned ItemsList::GetQuantity(unsigned itemId) const {
  return GetValue(itemId, &ItemValues::quantity);
}

std::string ItemsList::GetItemTag(unsigned itemId) const {
  return GetValue(itemId, &ItemValues::tag);
}

bool ItemsList::GetItemized(unsigned itemId) const {
  return GetValue(itemId, &ItemValues::itemized);
}

unsigned ItemsList::GetIndex(unsigned itemId) const {
  return GetValue(itemId, &ItemValues::index);
}

std::vector<std::uint32_t> ItemsList::GetHierarchyIndex(unsigned itemId) const {
  return GetValue(itemId, &ItemValues::hierarchyPath);
}

std::string ItemsList::MakeLabel(const ItemValues& values) const {
  const bool hierarchical = numbering_.hierarchical && !values.hierarchyPath.empty();
  return hierarchical ? JoinPath(values.hierarchyPath) : values.label;
}

std::string ItemsList::GetItemLabel(unsigned itemId) const {
  std::string label;
  ReadItemLabel(itemId, label);
  return label;
}

bool ItemsList::ReadItemLabel(unsigned itemId, std::string& label) const {
  const dp::MutexGuard guard(mutex_);
  const ItemRow* row = rows_.Find(itemId);
  label = row ? MakeLabel(row->values) : std::string();
  return row && row->values.itemized;
}

bool ItemsList::GetItemIdForInstance(const du::SmartPtr<SbomInstance>& instance, unsigned& itemId) const {
  const dp::MutexGuard guard(mutex_);
  const unsigned found = rows_.FindItemOf(instance.Get());
  if (found != 0) itemId = found;
  return found != 0;
}

bool ItemsList::GetMatchingItem(const du::SmartPtr<SbomInstance>& instance, unsigned& itemId) const {
  if (!instance) return false;
  const dp::MutexGuard guard(mutex_);
  const unsigned found = rows_.FindMatching(*instance);
  if (found != 0) itemId = found;
  return found != 0;
}

void ItemsList::GetInstances(unsigned itemId, std::set<du::SmartPtr<SbomInstance>>& instances) const {
  const dp::MutexGuard guard(mutex_);
  if (const ItemRow* row = rows_.Find(itemId)) instances.insert(row->instances.begin(), row->instances.end());
}

std::size_t ItemsList::GetInstanceCount(unsigned itemId) const {
  const dp::MutexGuard guard(mutex_);
  const ItemRow* row = rows_.Find(itemId);
  return row ? row->instances.size() : 0;
}

void ItemsList::GetNumberingSettings(Numbering& numbering) const {
  const dp::MutexGuard guard(mutex_);
  numbering = numbering_;
}

bool ItemsList::IsIndicated(unsigned itemId) const {
  const dp::MutexGuard guard(mutex_);
  const ItemRow* row = rows_.Find(itemId);
  return row && row->indicated;
}

std::vector<unsigned> ItemsList::GetItemIds() const {
  const dp::MutexGuard guard(mutex_);
  return rows_.GetIds();
}

bool ItemsList::GetRow(unsigned itemId, ItemRow& row) const {
  const dp::MutexGuard guard(mutex_);
  const ItemRow* found = rows_.Find(itemId);
  if (found) row = *found;
  return found != nullptr;
}

void ItemsList::SetIndicated(unsigned itemId, bool indicated) {
  {
    const dp::MutexGuard guard(mutex_);
    if (!rows_.SetIndicated(itemId, indicated)) return;
  }
  Notify({Kind::Indicated, itemId, indicated, {}, {}});
}

void ItemsList::SetItemized(unsigned itemId, bool itemized, const du::SmartPtr<Operation>& operation) {
  Change(
      itemId, [itemized](ItemValues& values) { values.itemized = itemized; }, operation);
}

void ItemsList::SetQuantity(unsigned itemId, unsigned quantity, const du::SmartPtr<Operation>& operation) {
  Change(
      itemId, [quantity](ItemValues& values) { values.quantity = quantity; }, operation);
}

void ItemsList::SetItemTag(unsigned itemId, const std::string& tag, const du::SmartPtr<Operation>& operation) {
  Change(
      itemId, [&tag](ItemValues& values) { values.tag = tag; }, operation);
}

void ItemsList::SetItemLabel(unsigned itemId, const std::string& label, const du::SmartPtr<Operation>& operation) {
  Change(
      itemId, [&label](ItemValues& values) { values.label = label; }, operation);
}

void ItemsList::SetIndex(unsigned itemId, unsigned index, const du::SmartPtr<Operation>& operation) {
  Change(
      itemId, [index](ItemValues& values) { values.index = index; }, operation);
}

void ItemsList::SetHierarchyIndex(unsigned itemId, const std::vector<std::uint32_t>& path,
                                  const du::SmartPtr<Operation>& operation) {
  Change(
      itemId, [&path](ItemValues& values) { values.hierarchyPath = path; }, operation);
}

void ItemsList::Change(unsigned itemId, const Edit& edit, const du::SmartPtr<Operation>& operation) {
  ItemValues before;
  {
    const dp::MutexGuard guard(mutex_);
    const ItemRow* row = rows_.Find(itemId);
    if (!row) return;
    before = row->values;
  }
  ItemValues after = before;
  edit(after);
  if (!SetValues(itemId, after) || !operation) return;
  operation->AddStep(MakeObject<ItemValuesOperationStep>(this, itemId, before, after));
}

bool ItemsList::SetValues(unsigned itemId, const ItemValues& values) {
  bool shown = false;
  {
    const dp::MutexGuard guard(mutex_);
    const ItemRow* row = rows_.Find(itemId);
    if (!row || row->values == values) return false;
    shown = row->values.label != values.label || row->values.quantity != values.quantity ||
            row->values.tag != values.tag || MakeLabel(row->values) != MakeLabel(values);
    rows_.SetValues(itemId, values);
  }
  if (shown) Notify({Kind::ContentChanged, itemId, false, {}, {}});
  return true;
}

void ItemsList::SetNumberingSettings(const Numbering& numbering) {
  std::vector<unsigned> changed;
  {
    const dp::MutexGuard guard(mutex_);
    std::map<unsigned, std::string> before;
    for (const unsigned id : rows_.GetIds()) before.emplace(id, MakeLabel(rows_.Find(id)->values));
    numbering_ = numbering;
    for (const auto& [id, label] : before) {
      if (MakeLabel(rows_.Find(id)->values) != label) changed.push_back(id);
    }
  }
  const UpdateGroup update(*this);
  for (const unsigned id : changed) Notify({Kind::ContentChanged, id, false, {}, {}});
}

ItemRow ItemsList::MakeRow(const du::SmartPtr<SbomInstance>& instance, const std::string& label) {
  ItemRow row;
  row.id = ++lastId_;
  row.values.label = label.empty() ? std::to_string(rows_.GetNextNumber()) : label;
  row.values.quantity = 1;
  row.values.index = rows_.GetNextIndex();
  row.instances.insert(instance);
  return row;
}

ItemInstanceChange ItemsList::AddInstance(const du::SmartPtr<SbomInstance>& instance, bool addedByHand,
                                          const std::string& label) {
  ItemInstanceChange change;
  if (!instance) return change;
  {
    const dp::MutexGuard guard(mutex_);
    change.itemId = rows_.FindItemOf(instance.Get());
    if (change.itemId != 0) return change;
    change.changed = true;
    change.itemId = rows_.FindMatching(*instance);
    change.rowCreated = change.itemId == 0;
    if (change.rowCreated) {
      ItemRow row = MakeRow(instance, label);
      row.addedByHand = addedByHand;
      rows_.Insert(row);
      change.itemId = row.id;
    } else {
      change.quantityBefore = rows_.Find(change.itemId)->values.quantity;
      Move(change.itemId, instance, change.quantityBefore + 1, true);
    }
    change.quantityAfter = change.quantityBefore + 1;
  }
  if (change.rowCreated) {
    Notify({Kind::Added, change.itemId, false, {}, {}});
  } else {
    NotifyMoved(change.itemId, instance, true);
  }
  return change;
}

bool ItemsList::Move(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, unsigned quantity, bool join) {
  if (!(join ? rows_.AddInstance(itemId, instance) : rows_.RemoveInstance(itemId, instance))) return false;
  ItemValues values = rows_.Find(itemId)->values;
  values.quantity = quantity;
  return rows_.SetValues(itemId, values);
}

void ItemsList::NotifyMoved(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, bool joined) {
  ItemNotification notification{Kind::ContentChanged, itemId, false, {}, {}};
  (joined ? notification.added : notification.removed).insert(instance);
  Notify(std::move(notification));
}

bool ItemsList::JoinRow(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, unsigned quantity) {
  {
    const dp::MutexGuard guard(mutex_);
    if (!Move(itemId, instance, quantity, true)) return false;
  }
  NotifyMoved(itemId, instance, true);
  return true;
}

bool ItemsList::LeaveRow(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, unsigned quantity) {
  {
    const dp::MutexGuard guard(mutex_);
    if (!Move(itemId, instance, quantity, false)) return false;
  }
  NotifyMoved(itemId, instance, false);
  return true;
}

bool ItemsList::InsertRow(const ItemRow& row) {
  {
    const dp::MutexGuard guard(mutex_);
    if (!rows_.Insert(row)) return false;
    lastId_ = std::max(lastId_, row.id);
  }
  Notify({Kind::Added, row.id, false, {}, {}});
  return true;
}

bool ItemsList::TakeRow(unsigned itemId, ItemRow& row) {
  {
    const dp::MutexGuard guard(mutex_);
    if (!rows_.Take(itemId, row)) return false;
  }
  Notify({Kind::Removed, itemId, false, {}, {}});
  return true;
}

void ItemsList::NotifyListCleared() {
  Notify({Kind::ListCleared, 0, false, {}, {}});
}

void ItemsList::OnUpdateEnded() {
  Flush();
}

void ItemsList::Notify(ItemNotification notification) {
  {
    const dp::MutexGuard guard(mutex_);
    queue_.Push(std::move(notification));
  }
  // Asked only after queueing: an update that closes in between on another thread would leave the entry behind.
  if (!IsUpdating()) Flush();
}

void ItemsList::Flush() {
  std::vector<ItemNotification> notifications;
  {
    const dp::MutexGuard guard(mutex_);
    notifications = queue_.Take();
  }
  for (const auto& notification : notifications) {
    for (const auto& observer : observers_.Copy()) Send(notification, *observer);
  }
}

}  // namespace zrk::illustration
