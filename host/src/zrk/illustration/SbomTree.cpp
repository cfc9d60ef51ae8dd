#include <zrk/illustration/SbomTree.h>

#include <vector>

#include <zrk/Instance.h>
#include <zrk/Property.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTreeObserver.h>

namespace zrk::illustration {

namespace {

/// Calls `visit` for the instance and everything below it, parents before children and in child order.
template <class Visit>
void VisitBelow(const du::SmartPtr<SbomInstance>& top, const Visit& visit) {
  std::vector<du::SmartPtr<SbomInstance>> open{top};
  while (!open.empty()) {
    const du::SmartPtr<SbomInstance> instance = open.back();
    open.pop_back();
    visit(instance);
    const auto children = instance->GetChildren();
    open.insert(open.end(), children.rbegin(), children.rend());
  }
}

void Replay(const du::SmartPtr<SbomInstance>& root, SbomTreeObserver& observer) {
  observer.OnBeginUpdate();
  VisitBelow(root, [&observer](const du::SmartPtr<SbomInstance>& instance) {
    observer.OnAddInstance(instance);
    for (const auto& [group, name] : instance->GetProperties().GetKeys()) observer.OnAddProperty(instance, group, name);
  });
  observer.OnEndUpdate();
}

}  // namespace

SbomTree::SbomTree() = default;

SbomTree::~SbomTree() = default;

template <class Notify>
void SbomTree::NotifyEach(const Notify& notify) const {
  // Only RegisterObserver puts observers in, so every one of them is a SbomTreeObserver.
  for (const auto& observer : observers_.Copy()) notify(static_cast<SbomTreeObserver&>(*observer));
}

template <class Notify>
void SbomTree::NotifyChange(const Notify& notify) {
  const UpdateGroup update(*this);
  NotifyEach(notify);
}

void SbomTree::OnUpdateBegun() {
  NotifyEach([](SbomTreeObserver& observer) { observer.OnBeginUpdate(); });
}

void SbomTree::OnUpdateEnded() {
  NotifyEach([](SbomTreeObserver& observer) { observer.OnEndUpdate(); });
}

void SbomTree::RegisterObserver(const du::SmartPtr<SbomTreeObserver>& observer, bool replay) {
  if (!observers_.Register(observer) || !replay) return;
  if (const auto root = GetRoot()) Replay(root, *observer);
}

du::SmartPtr<SbomInstance> SbomTree::GetRoot() const {
  const dp::MutexGuard guard(mutex_);
  return root_;
}

du::SmartPtr<SbomInstance> SbomTree::FindInstance(const std::string& id) const {
  const dp::MutexGuard guard(mutex_);
  const auto instance = byId_.find(id);
  return instance == byId_.end() ? nullptr : instance->second;
}

bool SbomTree::Contains(const du::SmartPtr<SbomInstance>& instance) const {
  return instance && FindInstance(instance->GetId().GetString()) == instance;
}

du::SmartPtr<SbomInstance> SbomTree::CreateRoot(const std::string& name, const du::SmartPtr<zrk::Instance>& ebom) {
  if (const auto present = GetRoot()) return present;
  const auto root = SbomInstance::Create(nullptr, name, ebom);
  if (!root) return nullptr;
  {
    const dp::MutexGuard guard(mutex_);
    root_ = root;
    byId_.emplace(root->GetId().GetString(), root);
  }
  NotifyChange([&root](SbomTreeObserver& observer) { observer.OnAddInstance(root); });
  return root;
}

du::SmartPtr<SbomInstance> SbomTree::AddInstance(const du::SmartPtr<SbomInstance>& parent, const std::string& name,
                                                 const du::SmartPtr<zrk::Instance>& ebom) {
  if (!Contains(parent)) return nullptr;
  const auto instance = SbomInstance::Create(parent, name, ebom);
  if (!instance) return nullptr;
  {
    const dp::MutexGuard guard(mutex_);
    byId_.emplace(instance->GetId().GetString(), instance);
  }
  NotifyChange([&instance](SbomTreeObserver& observer) { observer.OnAddInstance(instance); });
  return instance;
}

void SbomTree::RemoveInstance(const du::SmartPtr<SbomInstance>& instance) {
  if (!Contains(instance)) return;
  if (const auto parent = instance->GetParent()) parent->RemoveChild(instance);
  std::vector<std::string> ids;
  VisitBelow(instance, [&ids](const du::SmartPtr<SbomInstance>& gone) { ids.push_back(gone->GetId().GetString()); });
  {
    const dp::MutexGuard guard(mutex_);
    if (root_ == instance) root_.Reset();
    for (const auto& id : ids) byId_.erase(id);
  }
  NotifyChange([&instance](SbomTreeObserver& observer) { observer.OnRemoveInstance(instance); });
}

bool SbomTree::PutBackInstance(const du::SmartPtr<SbomInstance>& parent, std::size_t position,
                               const du::SmartPtr<SbomInstance>& instance) {
  if (!Contains(parent) || !instance || FindInstance(instance->GetId().GetString())) return false;
  parent->PutBackChild(instance, position);
  std::map<std::string, du::SmartPtr<SbomInstance>> returned;
  VisitBelow(instance,
             [&](const du::SmartPtr<SbomInstance>& back) { returned.emplace(back->GetId().GetString(), back); });
  {
    const dp::MutexGuard guard(mutex_);
    byId_.merge(returned);
  }
  NotifyChange([&instance](SbomTreeObserver& observer) { observer.OnAddInstance(instance); });
  return true;
}

void SbomTree::SetPropertyValue(const du::SmartPtr<SbomInstance>& instance, const PropertyTable::Key& key,
                                const du::Symbol& shapeSource, const std::optional<du::Symbol>& value) {
  if (!Contains(instance)) return;
  PropertyTable& table = instance->properties_;
  if (table.GetValue(key, shapeSource) == value) return;
  const UpdateGroup update(*this);
  if (value) {
    SetProperty(instance, key.group, key.name, *value, shapeSource);
  } else {
    table.RemoveValue(key, shapeSource);
    const bool isGone = !table.Find(key, du::Symbol::EMPTY);
    if (isGone)
      NotifyEach([&](SbomTreeObserver& observer) { observer.OnRemoveProperty(instance, key.group, key.name); });
  }
  NotifyEach([&](SbomTreeObserver& observer) { observer.OnPropertyChanged(instance, key.group, key.name); });
}

void SbomTree::SetProperty(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group, const du::Symbol& name,
                           const du::Symbol& value, const du::Symbol& shapeSource) {
  if (!Contains(instance)) return;
  const auto outcome = instance->properties_.Set({group, name}, value, shapeSource);
  if (outcome == PropertyTable::Outcome::Unchanged) return;
  NotifyChange([&](SbomTreeObserver& observer) {
    if (outcome == PropertyTable::Outcome::Added) {
      observer.OnAddProperty(instance, group, name);
    } else {
      observer.OnPropertyChanged(instance, group, name);
    }
  });
}

void SbomTree::RemoveProperty(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group,
                              const du::Symbol& name) {
  if (!Contains(instance) || !instance->properties_.Remove({group, name})) return;
  NotifyChange([&](SbomTreeObserver& observer) { observer.OnRemoveProperty(instance, group, name); });
}

void SbomTree::SetDefaultPropertyGroup(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group) {
  if (!Contains(instance) || instance->properties_.GetDefaultGroup() == group) return;
  instance->properties_.SetDefaultGroup(group);
  NotifyChange([&](SbomTreeObserver& observer) { observer.OnPropertyGroupChanged(instance, group); });
}

void SbomTree::DestroyTree() {
  NotifyEach([](SbomTreeObserver& observer) { observer.OnDestroy(); });
  du::SmartPtr<SbomInstance> root;
  std::map<std::string, du::SmartPtr<SbomInstance>> byId;
  const dp::MutexGuard guard(mutex_);
  root.Swap(root_);
  byId.swap(byId_);
}

}  // namespace zrk::illustration
