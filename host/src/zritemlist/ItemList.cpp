#include <zritemlist/ItemList.h>

#include <algorithm>
#include <utility>

#include <du/Symbol.h>
#include <zrk/CurrentOperation.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/Scene.h>
#include <zrk/illustration/ItemsList.h>

#include "ItemInstanceOperationStep.h"
#include "ItemRemovalOperationStep.h"

namespace zritemlist {

namespace {

du::Symbol GetKey() {
  return du::Symbol("zritemlist::ItemList");
}

/// A hook of the process.
template <class Function>
struct Hook {
  dp::Mutex mutex;
  Function call ZR_GUARDED_BY(mutex);

  void Set(Function function) {
    const dp::MutexGuard guard(mutex);
    call.swap(function);
  }
  [[nodiscard]] Function Get() {
    const dp::MutexGuard guard(mutex);
    return call;
  }
};

// Never destroyed: lists may outlive static objects.
Hook<ItemList::ListClearedHook>& GetListClearedHook() {
  static auto* const hook = new Hook<ItemList::ListClearedHook>;
  return *hook;
}

Hook<ItemList::ItemRemovalHook>& GetItemRemovalHook() {
  static auto* const hook = new Hook<ItemList::ItemRemovalHook>;
  return *hook;
}

}  // namespace

/// What a scene holds of its list. It goes with the scene, so no table of scenes can go stale.
class ItemList::SceneRegistration final : public du::RefCounted {
public:
  SceneRegistration(zrk::Scene* scene, const du::SmartPtr<ItemList>& list) : scene_(scene), list_(list) {
    list_->EnterScene(scene_);
  }
  ~SceneRegistration() override { list_->LeaveScene(scene_); }

  [[nodiscard]] du::SmartPtr<ItemList> GetList() const { return list_; }

private:
  zrk::Scene* const scene_;
  const du::SmartPtr<ItemList> list_;
};

ItemList::ItemList() : items_(zrk::MakeObject<zrk::illustration::ItemsList>()) {}

ItemList::~ItemList() = default;

du::SmartPtr<ItemList> ItemList::GetItemListForScene(const du::SmartPtr<zrk::Scene>& scene) {
  if (!scene) return nullptr;
  const auto registration = du::DynamicCast<SceneRegistration>(scene->GetRefCountedUserData(GetKey()));
  return registration ? registration->GetList() : nullptr;
}

du::SmartPtr<ItemList> ItemList::CreateItemListForScene(const du::SmartPtr<zrk::Scene>& scene) {
  if (!scene) return nullptr;
  if (const auto present = GetItemListForScene(scene)) return present;
  const auto list = zrk::MakeObject<ItemList>();
  if (list) Register(scene, list);
  return list;
}

void ItemList::RemoveItemListForScene(const du::SmartPtr<zrk::Scene>& scene) {
  if (scene) scene->RemoveUserData(GetKey());
}

void ItemList::ShareItemList(const du::SmartPtr<zrk::Scene>& from, const du::SmartPtr<zrk::Scene>& to) {
  if (!to || from == to) return;
  RemoveItemListForScene(to);
  if (const auto list = GetItemListForScene(from)) Register(to, list);
}

void ItemList::Register(const du::SmartPtr<zrk::Scene>& scene, const du::SmartPtr<ItemList>& list) {
  scene->AddRefCountedUserData(GetKey(), zrk::MakeObject<SceneRegistration>(scene.Get(), list));
}

void ItemList::SetListClearedHook(ListClearedHook hook) {
  GetListClearedHook().Set(std::move(hook));
}

void ItemList::SetItemRemovalHook(ItemRemovalHook hook) {
  GetItemRemovalHook().Set(std::move(hook));
}

void ItemList::EnterScene(zrk::Scene* scene) {
  auto link = std::make_unique<zrk::BackLink<zrk::Scene>>();
  link->Set(scene);
  const dp::MutexGuard guard(mutex_);
  scenes_.emplace(scene, std::move(link));
}

void ItemList::LeaveScene(const zrk::Scene* scene) {
  const dp::MutexGuard guard(mutex_);
  scenes_.erase(scene);
}

std::vector<du::SmartPtr<zrk::Scene>> ItemList::GetScenes() const {
  std::vector<du::SmartPtr<zrk::Scene>> scenes;
  const dp::MutexGuard guard(mutex_);
  for (const auto& entry : scenes_) {
    if (auto scene = entry.second->Get()) scenes.push_back(std::move(scene));
  }
  return scenes;
}

const du::SmartPtr<zrk::illustration::ItemsList>& ItemList::GetZrkItemList() const {
  return items_;
}

void ItemList::GetItemLabel(unsigned itemId, std::string& label, bool& flag) const {
  flag = items_->ReadItemLabel(itemId, label);
}

unsigned ItemList::AddInstance(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                               const du::SmartPtr<zrk::Operation>& operation, bool flag, const std::string& text) {
  const zrk::CurrentOperation current(operation);
  const auto change = items_->AddInstance(instance, flag, text);
  if (change.changed && operation) {
    operation->AddStep(
        zrk::MakeObject<ItemInstanceOperationStep>(items_, instance, change, ItemInstanceOperationStep::Kind::Added));
  }
  return change.itemId;
}

unsigned ItemList::RemoveInstance(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                  const du::SmartPtr<zrk::Operation>& operation) {
  const zrk::CurrentOperation current(operation);
  zrk::illustration::ItemInstanceChange change;
  if (!items_->GetItemIdForInstance(instance, change.itemId)) return 0;
  if (items_->GetInstanceCount(change.itemId) == 1) {
    AnnounceRemoval(change.itemId, operation);
    DeleteItem(change.itemId, operation);
    return change.itemId;
  }
  change.changed = true;
  change.quantityBefore = items_->GetQuantity(change.itemId);
  change.quantityAfter = change.quantityBefore - std::min(change.quantityBefore, 1U);
  if (items_->LeaveRow(change.itemId, instance, change.quantityAfter) && operation) {
    operation->AddStep(
        zrk::MakeObject<ItemInstanceOperationStep>(items_, instance, change, ItemInstanceOperationStep::Kind::Left));
  }
  return change.itemId;
}

void ItemList::AnnounceRemoval(unsigned itemId, const du::SmartPtr<zrk::Operation>& operation) const {
  const ItemRemovalHook hook = GetItemRemovalHook().Get();
  if (!hook) return;
  for (const auto& scene : GetScenes()) hook(scene, itemId, operation);
}

void ItemList::DeleteItem(unsigned itemId, const du::SmartPtr<zrk::Operation>& operation) {
  const zrk::CurrentOperation current(operation);
  zrk::illustration::ItemRow row;
  if (!items_->TakeRow(itemId, row) || !operation) return;
  operation->AddStep(zrk::MakeObject<ItemRemovalOperationStep>(items_, std::vector{row}));
}

bool ItemList::GetMatchingItem(const du::SmartPtr<zrk::illustration::SbomInstance>& instance, unsigned& itemId) const {
  return items_->GetMatchingItem(instance, itemId);
}

void ItemList::ClearList(const du::SmartPtr<zrk::Operation>& operation) {
  const zrk::CurrentOperation current(operation);
  if (const ListClearedHook hook = GetListClearedHook().Get()) {
    for (const auto& scene : GetScenes()) hook(scene, operation);
  }
  const zrk::Observable::UpdateGroup update(items_);
  std::vector<zrk::illustration::ItemRow> rows;
  for (const unsigned itemId : items_->GetItemIds()) {
    zrk::illustration::ItemRow row;
    if (items_->TakeRow(itemId, row)) rows.push_back(std::move(row));
  }
  if (rows.empty()) return;
  items_->NotifyListCleared();
  if (operation) operation->AddStep(zrk::MakeObject<ItemRemovalOperationStep>(items_, rows));
}

}  // namespace zritemlist
