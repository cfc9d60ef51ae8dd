#pragma once

#include "visibility/AnchorPickEvent.h"

namespace zrcallouts {

/// Asks for a visible point of the part a leader stands on, to place its anchor.
class CalloutPickAnchorEvent final : public AnchorPickEvent {
public:
  using AnchorPickEvent::AnchorPickEvent;
};

}  // namespace zrcallouts
