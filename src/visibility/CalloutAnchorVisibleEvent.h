#pragma once

#include "visibility/AnchorPickEvent.h"

namespace zrcallouts {

/// Asks whether the anchor of a leader can be seen, and where else its part can.
class CalloutAnchorVisibleEvent final : public AnchorPickEvent {
public:
  using AnchorPickEvent::AnchorPickEvent;
};

}  // namespace zrcallouts
