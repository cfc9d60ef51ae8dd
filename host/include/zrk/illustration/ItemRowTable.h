#pragma once

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/illustration/ItemRow.h>

namespace zrk {
class ComponentNode;
}

namespace zrk::illustration {

/// The rows of an items list with the indexes that make every lookup O(log n). Not thread-safe; notifies nobody.
/// An instance is in one row at most.
class ZR_HOST_API ItemRowTable {
public:
  [[nodiscard]] const ItemRow* Find(unsigned itemId) const;
  /// The row that holds the instance, or 0.
  [[nodiscard]] unsigned FindItemOf(const SbomInstance* instance) const;
  /// The lowest id of a row that holds the instance or one of the same component, or 0.
  [[nodiscard]] unsigned FindMatching(const SbomInstance& instance) const;
  /// Ids by index, then id.
  [[nodiscard]] std::vector<unsigned> GetIds() const;
  /// One more than the highest index in use.
  [[nodiscard]] unsigned GetNextIndex() const;
  /// One more than the highest number that a label consists of.
  [[nodiscard]] unsigned GetNextNumber() const;

  /// Puts the row in, without those of its instances that another row holds; false when the id is taken or 0.
  bool Insert(const ItemRow& row);
  /// Takes the row out into `row`; false and `row` untouched when there is none.
  bool Take(unsigned itemId, ItemRow& row);
  bool AddInstance(unsigned itemId, const du::SmartPtr<SbomInstance>& instance);
  bool RemoveInstance(unsigned itemId, const du::SmartPtr<SbomInstance>& instance);
  bool SetValues(unsigned itemId, const ItemValues& values);
  /// False when the row is missing or is marked that way already.
  bool SetIndicated(unsigned itemId, bool indicated);

private:
  void Index(unsigned itemId, const SbomInstance* instance);
  void Unindex(unsigned itemId, const SbomInstance* instance);
  void IndexValues(unsigned itemId, const ItemValues& values);
  void UnindexValues(unsigned itemId, const ItemValues& values);

  std::unordered_map<unsigned, ItemRow> rows_;  // never walked
  std::map<const SbomInstance*, unsigned> itemByInstance_;
  std::map<const ComponentNode*, std::map<unsigned, unsigned>> instanceCountByNode_;
  std::set<std::pair<unsigned, unsigned>> idsByIndex_;
  std::multiset<unsigned> numbers_;
};

}  // namespace zrk::illustration
