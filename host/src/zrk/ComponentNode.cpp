#include <zrk/ComponentNode.h>

#include <zrk/AddressArena.h>

namespace zrk {

namespace {

AddressArena& GetArena() {
  // Never destroyed: nodes may outlive every static object.
  static AddressArena* const arena = new AddressArena(sizeof(ComponentNode));
  return *arena;
}

}  // namespace

void* ComponentNode::operator new(std::size_t size) noexcept {
  return GetArena().Allocate(size);
}

void ComponentNode::operator delete(void* memory) noexcept {
  GetArena().Free(memory);
}

ComponentNode::ComponentNode(const std::string& name) : name_(name) {}

ComponentNode::~ComponentNode() = default;

const std::string& ComponentNode::GetName() const {
  return name_;
}

std::string ComponentNode::GetObjectName() const {
  return name_;
}

}  // namespace zrk
