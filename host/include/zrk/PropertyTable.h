#pragma once

#include <map>
#include <optional>
#include <tuple>
#include <vector>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>

namespace zrk {

class Property;

/// The properties of one part by group, name and shape source. Thread-safe; notifies nobody.
class ZR_HOST_API PropertyTable {
public:
  struct Key {
    du::Symbol group;
    du::Symbol name;
  };

  PropertyTable();
  ~PropertyTable();
  PropertyTable(const PropertyTable&) = delete;
  PropertyTable& operator=(const PropertyTable&) = delete;

  /// The group that an empty group symbol stands for; at first the unnamed group itself.
  [[nodiscard]] du::Symbol GetDefaultGroup() const;
  void SetDefaultGroup(const du::Symbol& group);

  enum class Outcome { Added, Changed, Unchanged };

  /// Stores the value; Added means that group and name had no value for any shape source.
  Outcome Set(const Key& key, const du::Symbol& value, const du::Symbol& shapeSource);
  /// Removes the property for every shape source; false when there was none.
  bool Remove(const Key& key);
  /// Removes the value of one shape source; false when there was none.
  bool RemoveValue(const Key& key, const du::Symbol& shapeSource);
  /// The value stored for exactly that shape source; nothing when there is none.
  [[nodiscard]] std::optional<du::Symbol> GetValue(const Key& key, const du::Symbol& shapeSource) const;
  /// As BaseInstance::GetProperty. Without an exact match for an empty shape source the first source by text answers.
  [[nodiscard]] du::SmartPtr<Property> Find(const Key& key, const du::Symbol& shapeSource) const;
  /// Group and name of every property, ordered by text, each once.
  [[nodiscard]] std::vector<Key> GetKeys() const;

private:
  using FullKey = std::tuple<du::Symbol, du::Symbol, du::Symbol>;
  using ConstIterator = std::map<FullKey, du::SmartPtr<Property>>::const_iterator;
  [[nodiscard]] du::Symbol Resolve(const du::Symbol& group) const ZR_REQUIRES(mutex_);
  [[nodiscard]] ConstIterator FindFirst(const Key& key) const ZR_REQUIRES(mutex_);

  mutable dp::Mutex mutex_;
  du::Symbol defaultGroup_ ZR_GUARDED_BY(mutex_);
  std::map<FullKey, du::SmartPtr<Property>> properties_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
