#pragma once
// Places labels of about one size: slots of that size round the frame, and the assignment of least total leader length.

#include <vector>

#include "layout/placement/RingPacker.h"
#include "layout/placement/RingPlan.h"

namespace zrcallouts::placement {

/// All slots of the plan, each big enough for every item that has an anchor.
[[nodiscard]] std::vector<Seat> MakeSlots(const Scene& scene, const RingPlan& plan);

/// Seats the items with anchors where the sum of leader lengths is least, then moves labels along their sides toward
/// their anchors, and repeats. No two straight leaders cross in a minimum, since swapping their labels would shorten
/// them. False where there are fewer slots than items; then `spots` stays as it is.
[[nodiscard]] bool MatchToSlots(const Scene& scene, const RingPlan& plan, SpotList& spots);

}  // namespace zrcallouts::placement
