#pragma once
// Keeps leaders off the anchors of other labels, where a reader could take them to end.

#include "layout/placement/GridIndex.h"
#include "layout/placement/Scene.h"

namespace zrcallouts::placement {

/// Tells how many anchors of other items a leader comes too close to, that is closer than 2 pixels.
class NearMissIndex {
public:
  /// Keeps a reference to the scene.
  explicit NearMissIndex(const Scene& scene);

  /// Pairs of a leader piece of the item on this spot and a foreign anchor near it; a shared anchor is not foreign.
  [[nodiscard]] int Count(std::size_t item, const LabelSpot& spot) const;

private:
  const Scene& scene_;
  GridIndex anchors_;
  mutable std::vector<std::uint32_t> near_;
};

/// Bends leaders somewhat earlier, inside the model's clearance, and shifts the ends of straight ones along the middle
/// half of their labels' edges, where that keeps them off foreign anchors and nothing else gets worse. Labels stay.
void ShiftNearMisses(const Scene& scene, SpotList& spots);

}  // namespace zrcallouts::placement
