#pragma once
// Places labels of about one size: slots of that size round the frame, and the assignment of least total leader length.

#include <array>

#include "layout/placement/RingPacker.h"

namespace zrcallouts::placement {

/// One way to lay slots round the model.
struct SlotPlan {
  FixedBox frame;                        ///< Leaders are straight inside.
  std::array<int, 4> rings{1, 1, 1, 1};  ///< Per side, as in kSides.
  Coord gap = 0, lane = 0;               ///< As in RingTask.
};

/// All slots of the plan, each big enough for every item that has an anchor.
[[nodiscard]] std::vector<Seat> MakeSlots(const Scene& scene, const SlotPlan& plan);

/// Seats the items with anchors where the sum of leader lengths is least, then moves labels along their sides toward
/// their anchors, and repeats. No two straight leaders cross in a minimum, since swapping their labels would shorten
/// them. False where there are fewer slots than items; then `spots` stays as it is.
[[nodiscard]] bool MatchToSlots(const Scene& scene, const SlotPlan& plan, SpotList& spots);

}  // namespace zrcallouts::placement
