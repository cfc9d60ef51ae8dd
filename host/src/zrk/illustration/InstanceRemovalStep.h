#pragma once

#include <cstddef>

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>

namespace zrk::illustration {

class SbomInstance;
class SbomTree;

/// The removal of an instance from a structure, with the place it had among its siblings.
class InstanceRemovalStep final : public OperationStep {
public:
  /// The instance is still in the tree and has a parent; Redo removes it.
  InstanceRemovalStep(const du::SmartPtr<SbomTree>& tree, const du::SmartPtr<SbomInstance>& instance);
  ~InstanceRemovalStep() override;

  void Undo() override;
  void Redo() override;

private:
  const du::SmartPtr<SbomTree> tree_;
  const du::SmartPtr<SbomInstance> parent_;
  const du::SmartPtr<SbomInstance> instance_;
  const std::size_t position_;
};

}  // namespace zrk::illustration
