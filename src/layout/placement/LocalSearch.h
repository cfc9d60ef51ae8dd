#pragma once
// Exchanges the seats of labels so that fewer leaders cross: for labels with several leaders, where no method is exact.

#include <vector>

#include "layout/placement/Seat.h"

namespace zrcallouts::placement {

/// Who sits where: seats[k] belongs to item items[k]; `free` are seats that nobody has. No two seats overlap.
struct Seating {
  FixedBox frame;
  std::vector<std::size_t> items;
  std::vector<Seat> seats;
  std::vector<Seat> free;
};

/// Moves single items to free seats and exchanges pairs of items while that lowers the number of crossings, or the
/// length of the leaders at the same number. Stops after `budget` comparisons of two labels' leaders.
void ReduceCrossings(const Scene& scene, Seating& seating, std::size_t budget);

/// The spots of the seated items; the others have no place.
[[nodiscard]] SpotList SpotsOf(const Scene& scene, const Seating& seating);

}  // namespace zrcallouts::placement
