#pragma once
// Counts what a reader of a figure would find untidy.

#include <vector>

#include "drawing/Figure.h"

namespace zrfigure {

struct LayoutFaults {
  int leaderCrossings = 0;  ///< Pairs of balloons whose leaders cross or touch; a shared anchor is no touch.
  int labelOverlaps = 0;  ///< Pairs of balloons that overlap, and balloons that the leader of another one runs through.
  int labelsOverModel = 0;  ///< Balloons that stand over the model's box.
};

/// Counts on the geometry as it will be drawn. `modelBox` in page pixels; balloons and leaders may touch it.
[[nodiscard]] LayoutFaults CountLayoutFaults(const std::vector<Balloon>& balloons, const Box2& modelBox);

/// Ascending indices of the balloons whose leaders cross, touch or run through something of another balloon.
[[nodiscard]] std::vector<std::size_t> FindTangledBalloons(const std::vector<Balloon>& balloons);

}  // namespace zrfigure
