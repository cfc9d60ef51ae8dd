#include <zrk/ComponentNode.h>

namespace zrk {

ComponentNode::ComponentNode(const std::string& name) : name_(name) {}

ComponentNode::~ComponentNode() = default;

const std::string& ComponentNode::GetName() const {
  return name_;
}

std::string ComponentNode::GetObjectName() const {
  return name_;
}

}  // namespace zrk
