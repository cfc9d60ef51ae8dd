#pragma once
// Keeps the engine's count of outstanding picks exact: a ticket is counted from its making to its end.

#include <du/SmartPtr.h>

#include "engine/EngineLink.h"

namespace zrcallouts {

/// One outstanding pick. Held by the event; ends when it is answered or goes, whichever comes first.
class PickTicket final {
public:
  explicit PickTicket(du::SmartPtr<EngineLink> link) : link_(std::move(link)), counted_(link_->BeginPick()) {}
  ~PickTicket() { End(); }
  PickTicket(const PickTicket&) = delete;
  PickTicket& operator=(const PickTicket&) = delete;

  /// Whether the engine was there to be counted for.
  [[nodiscard]] bool IsCounted() const { return counted_; }
  void End() {
    if (counted_) link_->EndPick();
    counted_ = false;
  }

private:
  const du::SmartPtr<EngineLink> link_;
  bool counted_;
};

}  // namespace zrcallouts
