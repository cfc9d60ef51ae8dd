#include <zrk/illustration/SbomInstance.h>

#include <algorithm>

#include <zrk/AddressArena.h>
#include <zrk/Instance.h>
#include <zrk/MemoryPool.h>
#include <zrk/Property.h>

namespace zrk::illustration {

namespace {

AddressArena& GetArena() {
  // Never destroyed: instances may outlive every static object.
  static AddressArena* const arena = new AddressArena(sizeof(SbomInstance));
  return *arena;
}

/// The name as one step of an id path: never empty and without the separator.
std::string MakeSegment(const std::string& name) {
  std::string segment = name.empty() ? "unnamed" : name;
  std::replace(segment.begin(), segment.end(), '/', '|');
  return segment;
}

}  // namespace

SbomInstance::SbomInstance(const du::SmartPtr<SbomInstance>& parent, const std::string& id, const std::string& name,
                           const du::SmartPtr<zrk::Instance>& ebom)
    : name_(name), id_(id), depth_(parent ? parent->GetDepth() + 1 : 0), ebom_(ebom) {
  parent_.Set(parent.Get());
}

du::SmartPtr<SbomInstance> SbomInstance::Create(const du::SmartPtr<SbomInstance>& parent, const std::string& name,
                                                const du::SmartPtr<zrk::Instance>& ebom) {
  const std::string id = parent ? parent->GetId().GetString() + "/" + parent->TakeSegment(name) : MakeSegment(name);
  const MemoryPool::InjectionPause pause;
  const du::SmartPtr<SbomInstance> instance(new SbomInstance(parent, id, name, ebom));
  if (!instance) return nullptr;
  if (ebom) ebom->sbomInstance_.Set(instance.Get());
  if (parent) parent->AddChild(instance);
  return instance;
}

SbomInstance::~SbomInstance() {
  if (ebom_) ebom_->sbomInstance_.Clear(this);
  for (const auto& child : GetChildren()) child->Detach(this);
}

void* SbomInstance::operator new(std::size_t size) noexcept {
  return GetArena().Allocate(size);
}

void SbomInstance::operator delete(void* memory) noexcept {
  GetArena().Free(memory);
}

std::string SbomInstance::TakeSegment(const std::string& name) {
  const std::string base = MakeSegment(name);
  const dp::MutexGuard guard(mutex_);
  unsigned& count = segmentCounts_[base];
  std::string segment = base;
  // A name may itself look like a numbered one, so every candidate is checked.
  do {
    if (++count > 1) segment = base + "#" + std::to_string(count);
  } while (!segments_.insert(segment).second);
  return segment;
}

void SbomInstance::AddChild(const du::SmartPtr<SbomInstance>& child) {
  {
    const dp::MutexGuard guard(mutex_);
    children_.push_back(child);
  }
  child->SetBelowWeld(weld_ || belowWeld_);
}

void SbomInstance::PutBackChild(const du::SmartPtr<SbomInstance>& child, std::size_t position) {
  child->parent_.Set(this);
  {
    const dp::MutexGuard guard(mutex_);
    const auto place = static_cast<std::ptrdiff_t>(std::min(position, children_.size()));
    children_.insert(children_.begin() + place, child);
  }
  child->SetBelowWeld(weld_ || belowWeld_);
}

bool SbomInstance::RemoveChild(const du::SmartPtr<SbomInstance>& child) {
  {
    const dp::MutexGuard guard(mutex_);
    const auto place = std::find(children_.begin(), children_.end(), child);
    if (place == children_.end()) return false;
    children_.erase(place);
  }
  child->Detach(this);
  return true;
}

void SbomInstance::Detach(const SbomInstance* parent) {
  parent_.Clear(parent);
  SetBelowWeld(false);
}

void SbomInstance::SetBelowWeld(bool below) {
  if (belowWeld_.exchange(below) == below || weld_) return;
  for (const auto& child : GetChildren()) child->SetBelowWeld(below);
}

void SbomInstance::SetWeld(bool weld) {
  if (weld_.exchange(weld) == weld || belowWeld_) return;
  for (const auto& child : GetChildren()) child->SetBelowWeld(weld);
}

du::SmartPtr<SbomInstance> SbomInstance::GetParent() const {
  return parent_.Get();
}

std::vector<du::SmartPtr<SbomInstance>> SbomInstance::GetChildren() const {
  const dp::MutexGuard guard(mutex_);
  return children_;
}

du::SmartPtr<zrk::Instance> SbomInstance::GetEbomInstance() const {
  return ebom_;
}

bool SbomInstance::GetEbomInstancesForWeld(std::set<du::SmartPtr<zrk::Instance>>& instances) const {
  bool found = false;
  std::vector<du::SmartPtr<SbomInstance>> open = GetChildren();
  if (open.empty() && ebom_) {
    instances.insert(ebom_);
    return true;
  }
  while (!open.empty()) {
    const du::SmartPtr<SbomInstance> instance = open.back();
    open.pop_back();
    const auto children = instance->GetChildren();
    open.insert(open.end(), children.begin(), children.end());
    if (!children.empty() || !instance->ebom_) continue;
    instances.insert(instance->ebom_);
    found = true;
  }
  return found;
}

du::SmartPtr<SbomInstance> SbomInstance::GetTopWeld() const {
  du::SmartPtr<SbomInstance> top;
  if (!weld_ && !belowWeld_) return top;
  for (du::SmartPtr<SbomInstance> level(const_cast<SbomInstance*>(this)); level; level = level->GetParent()) {
    if (level->weld_) top = level;
  }
  return top;
}

bool SbomInstance::IsWeld() const {
  return weld_;
}

bool SbomInstance::IsWeldMember() const {
  return belowWeld_;
}

std::string SbomInstance::GetName() const {
  return name_;
}

du::Symbol SbomInstance::GetId() const {
  return id_;
}

unsigned SbomInstance::GetDepth() const {
  return depth_;
}

bool SbomInstance::HasChildren() const {
  const dp::MutexGuard guard(mutex_);
  return !children_.empty();
}

du::SmartPtr<Property> SbomInstance::GetProperty(const du::Symbol& group, const du::Symbol& name,
                                                 const du::Symbol& shapeSource) const {
  return properties_.Find({group, name}, shapeSource);
}

std::string SbomInstance::GetObjectName() const {
  return name_;
}

const PropertyTable& SbomInstance::GetProperties() const {
  return properties_;
}

}  // namespace zrk::illustration
