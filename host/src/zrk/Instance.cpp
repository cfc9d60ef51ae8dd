#include <zrk/Instance.h>

#include <zrk/AddressArena.h>
#include <zrk/ComponentInstance.h>
#include <zrk/ComponentNode.h>
#include <zrk/Property.h>
#include <zrk/illustration/SbomInstance.h>

namespace zrk {

namespace {

AddressArena& GetArena() {
  // Never destroyed: instances may outlive every static object.
  static AddressArena* const arena = new AddressArena(sizeof(Instance));
  return *arena;
}

std::string MakeId(const du::SmartPtr<Instance>& parent, const std::string& name) {
  const std::string segment = name.empty() ? "unnamed" : name;
  return parent ? parent->GetId().GetString() + "/" + segment : segment;
}

unsigned DepthBelow(const du::SmartPtr<Instance>& parent) {
  return parent ? parent->GetDepth() + 1 : 0;
}

}  // namespace

Instance::Instance(const du::SmartPtr<ComponentNode>& node, const du::SmartPtr<Instance>& parent,
                   const std::string& name)
    : node_(node), parent_(parent), name_(name), id_(MakeId(parent, name)), depth_(DepthBelow(parent)) {
  if (parent_) ++parent_->childCount_;
}

Instance::Instance(const du::SmartPtr<ComponentInstance>& symbol, const du::SmartPtr<Instance>& parent)
    : symbol_(symbol),
      parent_(parent),
      name_(symbol ? symbol->GetID().GetString() : std::string()),
      id_("/" + name_),
      depth_(DepthBelow(parent)) {
  if (parent_) ++parent_->childCount_;
}

Instance::~Instance() {
  if (parent_) --parent_->childCount_;
}

void* Instance::operator new(std::size_t size) noexcept {
  return GetArena().Allocate(size);
}

void Instance::operator delete(void* memory) noexcept {
  GetArena().Free(memory);
}

du::SmartPtr<illustration::SbomInstance> Instance::GetSbomInstance() const {
  return sbomInstance_.Get();
}

du::SmartPtr<Instance> Instance::GetRootContainerRoot() const {
  const Instance* top = this;
  while (top->parent_) top = top->parent_.Get();
  return du::SmartPtr<Instance>(const_cast<Instance*>(top));
}

du::SmartPtr<Instance> Instance::GetParent() const {
  return parent_;
}

du::SmartPtr<ComponentNode> Instance::GetComponentNode() const {
  return node_;
}

bool Instance::Is3dSymbol() const {
  return static_cast<bool>(symbol_);
}

du::SmartPtr<ComponentInstance> Instance::GetComponentInstance() const {
  return symbol_;
}

const std::string& Instance::GetName() const {
  return name_;
}

du::Symbol Instance::GetId() const {
  return id_;
}

unsigned Instance::GetDepth() const {
  return depth_;
}

bool Instance::HasChildren() const {
  return childCount_ != 0;
}

du::SmartPtr<Property> Instance::GetProperty(const du::Symbol& group, const du::Symbol& name,
                                             const du::Symbol& shapeSource) const {
  return properties_.Find({group, name}, shapeSource);
}

std::string Instance::GetObjectName() const {
  return name_;
}

PropertyTable& Instance::GetProperties() {
  return properties_;
}

}  // namespace zrk
