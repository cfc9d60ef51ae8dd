#pragma once
// One way to lay rings of labels round the model.

#include <array>

#include "layout/placement/SideFrame.h"

namespace zrcallouts::placement {

struct RingPlan {
  FixedBox frame;                        ///< Leaders are straight inside.
  std::array<int, 4> rings{1, 1, 1, 1};  ///< Rows or columns per side, as in kSides.
  Coord gap = 0;                         ///< Between labels.
  Coord lane = 0;                        ///< Between a leader on its way to an outer ring and what stands beside it.
};

}  // namespace zrcallouts::placement
