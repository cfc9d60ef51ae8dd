#pragma once
// Counts what a reader of a figure would find untidy.

#include <vector>

#include "drawing/Figure.h"

namespace zrfigure {

/// Something that two balloons have against each other.
struct BalloonConflict {
  enum class Kind {
    LeadersMeet,    ///< Leaders cross or touch; a shared anchor is no touch.
    LabelsOverlap,  ///< The boxes overlap.
    LeaderThrough,  ///< A leader of the first runs through the label of the second.
  };
  Kind kind = Kind::LeadersMeet;
  std::size_t first = 0;
  std::size_t second = 0;
};

/// All conflicts of balloons as they will be drawn, by their indices.
[[nodiscard]] std::vector<BalloonConflict> FindConflicts(const std::vector<Balloon>& balloons);

/// Whether two boxes have more in common than a border.
[[nodiscard]] bool Overlap(const Box2& a, const Box2& b);

/// Whether a box stands out of `room`.
[[nodiscard]] bool Leaves(const Box2& box, const Box2& room);

struct LayoutFaults {
  int leaderCrossings = 0;  ///< Pairs of balloons whose leaders cross or touch; a shared anchor is no touch.
  int labelOverlaps = 0;  ///< Pairs of balloons that overlap, and balloons that the leader of another one runs through.
  int labelsOverModel = 0;  ///< Balloons that stand over the box of a picture of the model.
};

/// Counts on the geometry as it will be drawn. `drawings` in page pixels; balloons and leaders may touch them.
[[nodiscard]] LayoutFaults CountLayoutFaults(const std::vector<Balloon>& balloons, const std::vector<Box2>& drawings);

/// Ascending indices of the balloons that are tangled, overlap another one, stand over the model's box or leave `room`.
[[nodiscard]] std::vector<std::size_t> FindMisplacedBalloons(const std::vector<Balloon>& balloons, const Box2& modelBox,
                                                             const Box2& room);

/// Ascending indices of the balloons whose leaders cross, touch or run through something of another balloon.
[[nodiscard]] std::vector<std::size_t> FindTangledBalloons(const std::vector<Balloon>& balloons);

}  // namespace zrfigure
