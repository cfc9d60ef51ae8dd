#pragma once
// Chooses how to place the labels of a scene: tries ways from the plainest to the last resort and keeps the best.

#include "layout/placement/Audit.h"
#include "layout/placement/RingPlan.h"

namespace zrcallouts::placement {

/// The best placement found so far, and the ways to better ones.
class PlacementSearch {
public:
  explicit PlacementSearch(const Scene& scene);

  /// A spot for each item, without a place only where the page has none.
  [[nodiscard]] SpotList Run();

private:
  /// Whether about all labels have one size, so that slots of that size waste little.
  [[nodiscard]] bool IsNearUniform() const;
  [[nodiscard]] RingPlan PlanAround(const FixedBox& frame, int rows, int columns, Coord gap) const;
  [[nodiscard]] FixedBox FrameInsidePage(int rings, Coord gap) const;
  void MatchOutside();
  void MatchInside();
  bool MatchRings(const FixedBox& frame, int firstRings, Coord gap);
  void MoveTroublemakers();
  void SweepOutside();
  void SweepRings(const FixedBox& frame, Coord gap);
  /// True where the placement is the best so far.
  bool Consider(SpotList spots);
  [[nodiscard]] bool AllSeated() const { return !best_.empty() && bestTally_.unplaced == withoutAnchors_; }

  const Scene& scene_;
  int withoutAnchors_ = 0;
  bool severalLeaders_ = false;
  int sweepsLeft_ = 0;  ///< Fewer for large scenes: a page without room must not cost minutes.
  SpotList best_;
  Tally bestTally_;
};

}  // namespace zrcallouts::placement
