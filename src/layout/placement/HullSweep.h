#pragma once
// Places the labels of one side of the frame so that no two of their leaders cross, whatever the sizes of the labels.

#include <vector>

#include "layout/placement/RingPacker.h"

namespace zrcallouts::placement {

/// Seats the members (indices into the scene's items) on the side of the task; those without room stay as they are.
/// The sizes in `task` are set by the members.
void HullSweep(const Scene& scene, RingTask task, const std::vector<std::size_t>& members, SpotList& spots);

}  // namespace zrcallouts::placement
