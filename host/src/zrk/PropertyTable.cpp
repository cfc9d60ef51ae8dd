#include <zrk/PropertyTable.h>

#include <utility>

#include <zrk/MakeObject.h>
#include <zrk/Property.h>

namespace zrk {

PropertyTable::PropertyTable() = default;

PropertyTable::~PropertyTable() = default;

du::Symbol PropertyTable::GetDefaultGroup() const {
  const dp::MutexGuard guard(mutex_);
  return defaultGroup_;
}

void PropertyTable::SetDefaultGroup(const du::Symbol& group) {
  const dp::MutexGuard guard(mutex_);
  defaultGroup_ = group;
}

du::Symbol PropertyTable::Resolve(const du::Symbol& group) const {
  return group.IsEmpty() ? defaultGroup_ : group;
}

PropertyTable::ConstIterator PropertyTable::FindFirst(const Key& key) const {
  const du::Symbol group = Resolve(key.group);
  // The empty shape source comes before every other one.
  const auto first = properties_.lower_bound({group, key.name, du::Symbol::EMPTY});
  const bool found =
      first != properties_.end() && std::get<0>(first->first) == group && std::get<1>(first->first) == key.name;
  return found ? first : properties_.end();
}

PropertyTable::Outcome PropertyTable::Set(const Key& key, const du::Symbol& value, const du::Symbol& shapeSource) {
  auto property = MakeObject<Property>(key.name, value);
  const dp::MutexGuard guard(mutex_);
  const bool isNew = FindFirst(key) == properties_.end();
  auto& place = properties_[{Resolve(key.group), key.name, shapeSource}];
  if (place && place->GetValue() == value) return Outcome::Unchanged;
  place.Swap(property);
  return isNew ? Outcome::Added : Outcome::Changed;
}

bool PropertyTable::Remove(const Key& key) {
  const dp::MutexGuard guard(mutex_);
  auto first = FindFirst(key);
  if (first == properties_.end()) return false;
  while (first != properties_.end()) {
    properties_.erase(first);
    first = FindFirst(key);
  }
  return true;
}

bool PropertyTable::RemoveValue(const Key& key, const du::Symbol& shapeSource) {
  const dp::MutexGuard guard(mutex_);
  return properties_.erase({Resolve(key.group), key.name, shapeSource}) != 0;
}

std::optional<du::Symbol> PropertyTable::GetValue(const Key& key, const du::Symbol& shapeSource) const {
  const dp::MutexGuard guard(mutex_);
  const auto exact = properties_.find({Resolve(key.group), key.name, shapeSource});
  if (exact == properties_.end()) return std::nullopt;
  return exact->second->GetValue();
}

du::SmartPtr<Property> PropertyTable::Find(const Key& key, const du::Symbol& shapeSource) const {
  const dp::MutexGuard guard(mutex_);
  const auto exact = properties_.find({Resolve(key.group), key.name, shapeSource});
  if (exact != properties_.end()) return exact->second;
  const auto first = FindFirst(key);
  if (first == properties_.end()) return nullptr;
  const bool fits = shapeSource.IsEmpty() || std::get<2>(first->first).IsEmpty();
  return fits ? first->second : nullptr;
}

std::vector<PropertyTable::Key> PropertyTable::GetKeys() const {
  const dp::MutexGuard guard(mutex_);
  std::vector<Key> keys;
  for (const auto& [key, property] : properties_) {
    const auto& [group, name, source] = key;
    if (keys.empty() || keys.back().group != group || keys.back().name != name) keys.push_back({group, name});
  }
  return keys;
}

}  // namespace zrk
