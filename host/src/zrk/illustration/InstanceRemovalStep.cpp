#include "InstanceRemovalStep.h"

#include <algorithm>

#include <zrk/Instance.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>

namespace zrk::illustration {

namespace {

std::size_t GetPosition(const SbomInstance& parent, const du::SmartPtr<SbomInstance>& child) {
  const auto children = parent.GetChildren();
  return static_cast<std::size_t>(std::find(children.begin(), children.end(), child) - children.begin());
}

}  // namespace

InstanceRemovalStep::InstanceRemovalStep(const du::SmartPtr<SbomTree>& tree, const du::SmartPtr<SbomInstance>& instance)
    : tree_(tree), parent_(instance->GetParent()), instance_(instance), position_(GetPosition(*parent_, instance)) {}

InstanceRemovalStep::~InstanceRemovalStep() = default;

void InstanceRemovalStep::Undo() {
  tree_->PutBackInstance(parent_, position_, instance_);
}

void InstanceRemovalStep::Redo() {
  tree_->RemoveInstance(instance_);
}

}  // namespace zrk::illustration
