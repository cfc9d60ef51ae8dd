#pragma once
// Watches the structure tree; turns all property changes of one update into one label regeneration.

#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/SbomTreeObserver.h>

namespace zrcallouts {

class Callouts;

/// Owned by the engine and the tree; called on the thread that changes the tree.
class TreeObserver final : public zrk::illustration::SbomTreeObserver {
public:
  explicit TreeObserver(Callouts* engine) : engine_(engine) {}

  void Attach(const du::SmartPtr<zrk::illustration::SbomTree>& tree) { tree_ = tree; }
  [[nodiscard]] du::SmartPtr<zrk::illustration::SbomTree> GetTree() const { return tree_; }
  void ClearEngine() { engine_ = nullptr; }

  void OnBeginUpdate() override;
  void OnEndUpdate() override;
  void OnDestroy() override;
  void OnPropertyChanged(const du::SmartPtr<zrk::illustration::SbomInstance>& instance, const du::Symbol& group,
                         const du::Symbol& name) override;
  void OnPropertyGroupChanged(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                              const du::Symbol& group) override;

private:
  Callouts* engine_;
  du::SmartPtr<zrk::illustration::SbomTree> tree_;
  bool changed_ = false;
};

}  // namespace zrcallouts
