#pragma once
// Places labels of any sizes: each anchor goes to a side of the frame, and a hull sweep fills each side.

#include "layout/placement/RingPlan.h"
#include "layout/placement/Scene.h"

namespace zrcallouts::placement {

/// Places the items that have anchors. Their straight leaders do not cross. Items that find no room on the rings of the
/// plan stay without a place. `stacking` as in SweepTask.
[[nodiscard]] SpotList SweepSides(const Scene& scene, const RingPlan& plan, double stacking);

/// The same for labels with several leaders, which a sweep does not keep from crossing: then exchanges labels of one
/// size so that fewer leaders cross.
[[nodiscard]] SpotList SweepAndUntangle(const Scene& scene, const RingPlan& plan, double stacking);

}  // namespace zrcallouts::placement
