#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>
#include <zrk/Observable.h>
#include <zrk/ObserverList.h>
#include <zrk/illustration/ItemNotificationQueue.h>
#include <zrk/illustration/ItemRow.h>
#include <zrk/illustration/ItemRowTable.h>

namespace zrk {
class Operation;
}

namespace zrk::illustration {

class ItemsListObserver;

/// The rows of a parts list. Ids are never used again, also not after a row is gone; undo and redo bring a row back
/// under its own id. An unknown id has quantity 0, empty texts and path, index 0 and is not itemized. Thread-safe:
/// observers are told after the change on the changing thread with no lock held, or together when the outermost
/// update group closes. Lookups and single changes cost O(log n).
class ZR_HOST_API ItemsList : public Object, public Observable {
public:
  /// How the items are numbered.
  struct Numbering {
    bool hierarchical = false;  ///< labels are the hierarchy paths instead of the label texts
  };

  ItemsList();
  ~ItemsList() override;

  void RegisterObserver(const du::SmartPtr<ItemsListObserver>& observer);
  /// Never waits for a notification under way.
  void UnregisterObserver(const du::SmartPtr<ItemsListObserver>& observer);
  [[nodiscard]] std::size_t GetObserverCount() const;

  [[nodiscard]] unsigned GetQuantity(unsigned itemId) const;
  [[nodiscard]] std::string GetItemTag(unsigned itemId) const;
  /// The item's number as labels show it: the label text, or with hierarchical numbering the path joined by '.' when
  /// one is set.
  [[nodiscard]] std::string GetItemLabel(unsigned itemId) const;
  /// The same in `label`; says whether the item is itemized.
  bool ReadItemLabel(unsigned itemId, std::string& label) const;
  /// The item that holds the instance; false and `itemId` untouched when there is none.
  bool GetItemIdForInstance(const du::SmartPtr<SbomInstance>& instance, unsigned& itemId) const;
  /// The item that holds the instance, else the lowest one that holds an instance of the same component; false and
  /// `itemId` untouched when there is none.
  bool GetMatchingItem(const du::SmartPtr<SbomInstance>& instance, unsigned& itemId) const;
  [[nodiscard]] bool GetItemized(unsigned itemId) const;
  /// Inserts the item's instances into the set.
  void GetInstances(unsigned itemId, std::set<du::SmartPtr<SbomInstance>>& instances) const;
  [[nodiscard]] std::size_t GetInstanceCount(unsigned itemId) const;
  [[nodiscard]] unsigned GetIndex(unsigned itemId) const;
  [[nodiscard]] std::vector<std::uint32_t> GetHierarchyIndex(unsigned itemId) const;
  void GetNumberingSettings(Numbering& numbering) const;
  [[nodiscard]] bool IsIndicated(unsigned itemId) const;
  /// Ids of all rows, by index and then id.
  [[nodiscard]] std::vector<unsigned> GetItemIds() const;
  /// Copies the row; false and `row` untouched when there is none.
  bool GetRow(unsigned itemId, ItemRow& row) const;

  /// Marks the item in the list; a content change is not notified.
  void SetIndicated(unsigned itemId, bool indicated);
  // Each of the following is an undoable step of the operation when one is given. A value that is already there, and
  // an unknown id, change nothing. What changes a label, a quantity or a tag notifies a content change.
  void SetItemized(unsigned itemId, bool itemized, const du::SmartPtr<Operation>& operation = nullptr);
  void SetQuantity(unsigned itemId, unsigned quantity, const du::SmartPtr<Operation>& operation = nullptr);
  void SetItemTag(unsigned itemId, const std::string& tag, const du::SmartPtr<Operation>& operation = nullptr);
  void SetItemLabel(unsigned itemId, const std::string& label, const du::SmartPtr<Operation>& operation = nullptr);
  void SetIndex(unsigned itemId, unsigned index, const du::SmartPtr<Operation>& operation = nullptr);
  void SetHierarchyIndex(unsigned itemId, const std::vector<std::uint32_t>& path,
                         const du::SmartPtr<Operation>& operation = nullptr);
  /// Notifies a content change of every item whose label changes with it, as one update.
  void SetNumberingSettings(const Numbering& numbering);

  // Structure of the list: for zritemlist::ItemList and the undo steps. Each notifies.
  /// Adds the instance to the matching item, or to a new itemized row at the end with the next free number as label
  /// (`label` instead when it is not empty).
  ItemInstanceChange AddInstance(const du::SmartPtr<SbomInstance>& instance, bool addedByHand,
                                 const std::string& label);
  /// Puts the instance into the row and sets the row's quantity.
  bool JoinRow(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, unsigned quantity);
  /// Takes the instance out of the row, which stays, and sets the row's quantity.
  bool LeaveRow(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, unsigned quantity);
  bool InsertRow(const ItemRow& row);
  /// Takes the row out into `row`; false and `row` untouched when there is none.
  bool TakeRow(unsigned itemId, ItemRow& row);
  bool SetValues(unsigned itemId, const ItemValues& values);
  void NotifyListCleared();

protected:
  void OnUpdateEnded() override;

private:
  using Edit = std::function<void(ItemValues&)>;
  template <class T>
  [[nodiscard]] T GetValue(unsigned itemId, T ItemValues::*value) const;
  [[nodiscard]] std::string MakeLabel(const ItemValues& values) const ZR_REQUIRES(mutex_);
  void Change(unsigned itemId, const Edit& edit, const du::SmartPtr<Operation>& operation);
  [[nodiscard]] ItemRow MakeRow(const du::SmartPtr<SbomInstance>& instance, const std::string& label)
      ZR_REQUIRES(mutex_);
  bool Move(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, unsigned quantity, bool join)
      ZR_REQUIRES(mutex_);
  void NotifyMoved(unsigned itemId, const du::SmartPtr<SbomInstance>& instance, bool joined);
  void Notify(ItemNotification notification);
  void Flush();

  ObserverList<ItemsListObserver> observers_;
  mutable dp::Mutex mutex_;
  ItemRowTable rows_ ZR_GUARDED_BY(mutex_);
  unsigned lastId_ ZR_GUARDED_BY(mutex_) = 0;
  Numbering numbering_ ZR_GUARDED_BY(mutex_);
  ItemNotificationQueue queue_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk::illustration
