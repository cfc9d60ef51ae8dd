#pragma once
// Moves seated labels along their sides to shorten their leaders, without changing the order on a side.

#include "layout/placement/RingPacker.h"
#include "layout/placement/RingPlan.h"

namespace zrcallouts::placement {

/// Moves `seats` (seats[k] belongs to item items[k]) along their sides so that the leaders of each side get shorter in
/// sum. Order, rings, gaps and lanes stay valid; labels stay on their side of obstacles. Leaders may cross afterwards.
void RelaxSeats(const Scene& scene, const RingPlan& plan, const std::vector<std::size_t>& items,
                std::vector<Seat>& seats);

}  // namespace zrcallouts::placement
