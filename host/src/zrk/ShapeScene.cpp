#include <zrk/ShapeScene.h>

#include <zrk/AnnoSet.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/SceneListener.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/SbomInstance.h>

namespace zrk {

namespace {

std::string GetLeaderId(const Instance* instance) {
  if (!instance) return {};
  const auto sbomInstance = instance->Is3dSymbol() ? nullptr : instance->GetSbomInstance();
  return (sbomInstance ? sbomInstance->GetId() : instance->GetId()).GetString();
}

/// The member added first under that key, or null.
template <class Index, class Key>
du::SmartPtr<ShapeInstance> FindFirst(const Index& index, const Key& key) {
  const auto first = index.lower_bound({key, 0});
  if (first == index.end() || first->first.first != key) return nullptr;
  return first->second;
}

}  // namespace

ShapeScene::ShapeScene() {
  SetAnnoSet(MakeObject<AnnoSet>(this));
}

ShapeScene::~ShapeScene() {
  for (const auto& shape : GetShapeInstances()) shape->scene_.Clear(this);
}

du::SmartPtr<ShapeInstance> ShapeScene::GetShapeInstance(const du::SmartPtr<Instance>& instance) const {
  if (!instance) return nullptr;
  const Instance* key = instance.Get();
  const dp::MutexGuard guard(mutex_);
  return FindFirst(byInstance_, key);
}

du::SmartPtr<ShapeInstance> ShapeScene::FindShapeInstance(const std::string& id) const {
  if (id.empty()) return nullptr;
  const dp::MutexGuard guard(mutex_);
  return FindFirst(byId_, id);
}

std::vector<du::SmartPtr<ShapeInstance>> ShapeScene::GetShapeInstances() const {
  const dp::MutexGuard guard(mutex_);
  std::vector<du::SmartPtr<ShapeInstance>> shapes;
  shapes.reserve(inOrder_.size());
  for (const auto& entry : inOrder_) shapes.push_back(entry.second);
  return shapes;
}

std::vector<du::SmartPtr<ShapeInstance>> ShapeScene::GetShapeInstances(const du::SmartPtr<Instance>& instance) const {
  std::vector<du::SmartPtr<ShapeInstance>> shapes;
  if (!instance) return shapes;
  const Instance* key = instance.Get();
  const dp::MutexGuard guard(mutex_);
  for (auto entry = byInstance_.lower_bound({key, 0}); entry != byInstance_.end() && entry->first.first == key;
       ++entry) {
    shapes.push_back(entry->second);
  }
  return shapes;
}

std::uint64_t ShapeScene::GetPlace(const du::SmartPtr<ShapeInstance>& shape) const {
  const dp::MutexGuard guard(mutex_);
  const auto member = members_.find(shape.Get());
  return member == members_.end() ? 0 : member->second.order;
}

std::uint64_t ShapeScene::GetChangeCount() const {
  return changeCount_;
}

void ShapeScene::AddShapeInstance(const du::SmartPtr<ShapeInstance>& shape) {
  PutBackShapeInstance(shape, 0);
}

void ShapeScene::PutBackShapeInstance(const du::SmartPtr<ShapeInstance>& shape, std::uint64_t place) {
  if (!shape || !shape->scene_.SetIfEmpty(this)) return;
  const auto instance = shape->GetInstance();
  const std::string id = GetLeaderId(instance.Get());
  {
    const dp::MutexGuard guard(mutex_);
    const bool isFree = place != 0 && inOrder_.count(place) == 0;
    const std::uint64_t order = isFree ? place : nextOrder_++;
    inOrder_.emplace(order, shape);
    members_.emplace(shape.Get(), Member{order, id});
    byInstance_.emplace(std::make_pair(instance.Get(), order), shape);
    byId_.emplace(std::make_pair(id, order), shape);
  }
  ++changeCount_;
  for (const auto& listener : GetListeners()) listener->OnShapeInstanceCreate(shape);
}

void ShapeScene::RemoveShapeInstance(const du::SmartPtr<ShapeInstance>& shape) {
  if (!shape) return;
  {
    const dp::MutexGuard guard(mutex_);
    const auto member = members_.find(shape.Get());
    if (member == members_.end()) return;
    const auto [order, id] = member->second;
    inOrder_.erase(order);
    byInstance_.erase({shape->GetInstance().Get(), order});
    byId_.erase({id, order});
    members_.erase(member);
  }
  ++changeCount_;
  for (const auto& listener : GetListeners()) listener->OnShapeInstanceRemove(shape);
  // Only now: listeners may still ask the shape instance for its scene.
  shape->scene_.Clear(this);
}

void ShapeScene::NotifyPaletteChanged() {
  for (const auto& listener : GetListeners()) listener->OnPaletteColorChanged();
}

}  // namespace zrk
