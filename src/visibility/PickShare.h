#pragma once
// An event's share in the picks of a callout: its ticket, and the way of its answer back to them.

#include <cstddef>
#include <new>
#include <utility>

#include <du/SmartPtr.h>
#include <zrk/PickAnswer.h>

#include "engine/EngineLink.h"
#include "engine/OnFailure.h"
#include "visibility/AnchorPicks.h"
#include "visibility/PickTicket.h"

namespace zrcallouts {

/// Held by one event. Settles its pick once: with the answer, or without one when the event goes. The count of
/// outstanding picks falls after that, so that at 0 everything answered is in place.
class PickShare final {
public:
  struct Place {
    du::SmartPtr<AnchorPicks> picks;
    du::SmartPtr<EngineLink> link;
    std::size_t pick;
  };

  explicit PickShare(Place place) : place_(std::move(place)), ticket_(place_.link) {}
  ~PickShare() {
    try {
      Settle(nullptr);
    } catch (const std::bad_alloc&) {  // whoever drops the event asked for nothing, so there is nobody to tell
    }
  }
  PickShare(const PickShare&) = delete;
  PickShare& operator=(const PickShare&) = delete;

  void Settle(const zrk::PickAnswer* answer) {
    const auto picks = std::exchange(place_.picks, {});  // an event kept after its answer keeps no callout alive
    if (!picks) return;
    const OnFailure end([this] { ticket_.End(); });
    picks->Settle(place_.pick, answer);
    ticket_.End();
  }

private:
  Place place_;
  PickTicket ticket_;
};

}  // namespace zrcallouts
