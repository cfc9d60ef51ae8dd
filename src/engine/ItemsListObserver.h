#pragma once
// Watches the figure's item list and passes removals and content changes of items to the engine.

#include <zrk/illustration/ItemsListObserver.h>

namespace zrcallouts {

class Callouts;

/// Owned by the engine and the item list; called on the thread that changes the list, or closes its update group.
class ItemsListObserver final : public zrk::illustration::ItemsListObserver {
 public:
  explicit ItemsListObserver(Callouts* engine) : engine_(engine) {}

  void ClearEngine() { engine_ = nullptr; }

  void OnItemRemoved(unsigned itemId) override;
  void OnItemContentChanged(unsigned itemId, const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& added,
                            const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& removed) override;

 private:
  Callouts* engine_;
};

}  // namespace zrcallouts
