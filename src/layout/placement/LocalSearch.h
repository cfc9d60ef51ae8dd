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

/// What a pair of items whose leaders cross is usually worth in leader length.
constexpr double kCrossingCost = 400.0 * kUnitsPerPixel;

/// Exchanges the seats of pairs of items and moves items to free seats, so that fewer leaders cross and, at a lesser
/// price, leaders stay short. Items only get seats they fit on. Takes `steps` trials; a `daring` of 1 leaves the way to
/// the result open to detours, 0 takes improvements only. Never ends worse than it began.
void ReduceCrossings(const Scene& scene, Seating& seating, std::size_t steps, double daring,
                     double crossingCost = kCrossingCost);

/// The spots of the seated items; the others have no place.
[[nodiscard]] SpotList SpotsOf(const Scene& scene, const Seating& seating);

}  // namespace zrcallouts::placement
