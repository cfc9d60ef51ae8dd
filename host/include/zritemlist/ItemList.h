#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/BackLink.h>
#include <zrk/Object.h>

namespace zrk {
class Operation;
class Scene;
namespace illustration {
class ItemsList;
class SbomInstance;
}  // namespace illustration
}  // namespace zrk

namespace zritemlist {

/// The item list of a scene: numbers the parts of the structure. One list may serve several scenes. Thread-safe.
class ZR_HOST_API ItemList : public zrk::Object {
public:
  /// Called by ClearList for each scene of the list before the rows go, so that the application can take the callouts.
  using ListClearedHook =
      std::function<void(const du::SmartPtr<zrk::Scene>& scene, const du::SmartPtr<zrk::Operation>& operation)>;
  /// Called by RemoveInstance for each scene of the list before a row goes with its last instance, so that the
  /// application can take the item's callouts within the operation.
  using ItemRemovalHook = std::function<void(const du::SmartPtr<zrk::Scene>& scene, unsigned itemId,
                                             const du::SmartPtr<zrk::Operation>& operation)>;

  ItemList();
  ~ItemList() override;

  /// The list of the scene; null when it has none. Never creates one.
  [[nodiscard]] static du::SmartPtr<ItemList> GetItemListForScene(const du::SmartPtr<zrk::Scene>& scene);
  /// The list of the scene; made when it has none. Null for a null scene.
  static du::SmartPtr<ItemList> CreateItemListForScene(const du::SmartPtr<zrk::Scene>& scene);
  /// Parts the scene from its list, which keeps its rows; nobody is notified.
  static void RemoveItemListForScene(const du::SmartPtr<zrk::Scene>& scene);
  /// Lets `to` use the list of `from`; `to` loses its own list, also when `from` has none.
  static void ShareItemList(const du::SmartPtr<zrk::Scene>& from, const du::SmartPtr<zrk::Scene>& to);
  static void SetListClearedHook(ListClearedHook hook);
  static void SetItemRemovalHook(ItemRemovalHook hook);

  /// The rows: one object for the list's whole life.
  [[nodiscard]] const du::SmartPtr<zrk::illustration::ItemsList>& GetZrkItemList() const;
  /// The item's number; `flag` says whether the item exists and is itemized. Empty for an unknown item.
  void GetItemLabel(unsigned itemId, std::string& label, bool& flag) const;
  /// Puts the instance into the matching item or a new one and returns the item's id; 0 for a null instance. `flag`
  /// marks a new row as added by hand; `text` is the label of a new row, or empty for the next free number. A step of
  /// the operation when one is given.
  unsigned AddInstance(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                       const du::SmartPtr<zrk::Operation>& operation, bool flag, const std::string& text);
  /// Takes the instance out of its item and counts the quantity down; the last instance takes the row with it. Returns
  /// the item's id, 0 for an instance that is in none. A step of the operation when one is given.
  unsigned RemoveInstance(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                          const du::SmartPtr<zrk::Operation>& operation);
  /// Removes the item; a step of the operation when one is given. Unknown items change nothing.
  void DeleteItem(unsigned itemId, const du::SmartPtr<zrk::Operation>& operation);
  /// The item of the instance or of one of the same component; false and `itemId` untouched when there is none.
  bool GetMatchingItem(const du::SmartPtr<zrk::illustration::SbomInstance>& instance, unsigned& itemId) const;
  /// Calls the hook, then removes every row as one update and one step of the operation.
  void ClearList(const du::SmartPtr<zrk::Operation>& operation);

private:
  class SceneRegistration;
  static void Register(const du::SmartPtr<zrk::Scene>& scene, const du::SmartPtr<ItemList>& list);
  void EnterScene(zrk::Scene* scene);
  void LeaveScene(const zrk::Scene* scene);
  [[nodiscard]] std::vector<du::SmartPtr<zrk::Scene>> GetScenes() const;
  void AnnounceRemoval(unsigned itemId, const du::SmartPtr<zrk::Operation>& operation) const;

  const du::SmartPtr<zrk::illustration::ItemsList> items_;
  mutable dp::Mutex mutex_;
  std::map<const zrk::Scene*, std::unique_ptr<zrk::BackLink<zrk::Scene>>> scenes_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zritemlist
