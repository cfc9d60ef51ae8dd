#pragma once
// Places labels of about one size: slots of that size round the frame, and the assignment of least total leader length.

#include <vector>

#include "layout/placement/RingPlan.h"
#include "layout/placement/Seat.h"

namespace zrcallouts::placement {

/// All slots of the plan, each big enough for every item that has an anchor.
[[nodiscard]] std::vector<Seat> MakeSlots(const Scene& scene, const RingPlan& plan);

/// Seats the items with anchors where the sum of leader lengths is least, then moves labels along their sides toward
/// their anchors, and repeats. No two straight leaders cross in a minimum, since swapping their labels would shorten
/// them. `slots` are those of the plan, at least as many as items with anchors.
[[nodiscard]] SpotList MatchToSlots(const Scene& scene, const RingPlan& plan, std::vector<Seat> slots);

/// The same for labels with several leaders, where a minimum may have crossings: searches for seats with fewer of them.
[[nodiscard]] SpotList MatchAndUntangle(const Scene& scene, const RingPlan& plan, std::vector<Seat> slots);

}  // namespace zrcallouts::placement
