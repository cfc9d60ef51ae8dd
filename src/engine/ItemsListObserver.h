#pragma once
// Watches the figure's item list and passes removals and content changes of items to the engine.

#include <zrk/illustration/ItemsListObserver.h>

#include <atomic>

namespace zrcallouts {

class Callouts;

/// Owned by the engine and the item list; called on the thread that changes the list, or closes its update group. That
/// may be a pool thread, which holds the engine while its run lasts.
class ItemsListObserver final : public zrk::illustration::ItemsListObserver {
public:
  explicit ItemsListObserver(Callouts* engine) : engine_(engine) {}

  void ClearEngine() { engine_ = nullptr; }

  void OnItemRemoved(unsigned itemId) override;
  void OnItemContentChanged(unsigned itemId, const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& added,
                            const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& removed) override;

private:
  std::atomic<Callouts*> engine_;
};

}  // namespace zrcallouts
