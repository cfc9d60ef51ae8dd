#pragma once
// Places the labels of one side of the frame so that no two of their leaders cross, whatever the sizes of the labels.

#include <vector>

#include "layout/placement/RingPacker.h"

namespace zrcallouts::placement {

/// A side to fill, with the items that come there.
struct SweepTask {
  RingTask room;                     ///< `rings` is the most labels that stand one behind the other.
  std::vector<std::size_t> members;  ///< Indices into the scene's items.
  double stacking = 1;               ///< How early labels stand one behind the other: 1 when there is no other way.
};

/// Seats the members of the task; `seats` has one entry an item, and those of members without room stay as they are.
void HullSweep(const Scene& scene, const SweepTask& task, std::vector<Seat>& seats);

}  // namespace zrcallouts::placement
