#pragma once
// Hands out places along one side of the frame from its low end to its high end, in one or more rings.

#include <vector>

#include "layout/placement/Seat.h"

namespace zrcallouts::placement {

/// The side to fill and the room there is.
struct RingTask {
  SideFrame edge;
  Coord portLow = 0, portHigh = 0;  ///< Where leaders may meet the frame, in u.
  Coord boxLow = 0, boxHigh = 0;    ///< Where labels may stand, in u.
  Coord depth = 0;                  ///< Room outside the frame, in v.
  int rings = 1;                    ///< Rows or columns, at least 1; fewer are used where `depth` ends.
  Coord gap = 0;                    ///< Between labels.
  Coord lane = 0;                   ///< Between a leader on its way to an outer ring and what stands beside it.
  Coord leastExtent = 0;            ///< Along the side, of the labels that may come.
  Coord mostDepth = 0;              ///< Away from the side, of the labels that may come.
};

/// The task for the whole of a side (index into kSides) of the plan, without sizes of labels.
[[nodiscard]] RingTask MakeRingTask(const Scene& scene, const RingPlan& plan, std::size_t side);

/// The fill level of the rings of one side. A port, where a leader meets the frame, stands at a constant offset from
/// the low edge of its label. Leaders to outer rings run through lanes that labels of inner rings leave free.
class RingPacker {
public:
  RingPacker(const Scene& scene, const RingTask& task);

  [[nodiscard]] std::size_t RingCount() const { return rings_.size(); }
  /// Ring for the next label: the one nearest to the model that has room at `wished`; else the one that has room first,
  /// of equals the outermost, since an inner label would close the lane.
  [[nodiscard]] std::size_t ChooseRing(Coord wished) const;
  /// First port that the ring can still have.
  [[nodiscard]] Coord EarliestPort(std::size_t ring) const;
  /// Takes a place for a label. False where it meets an obstacle or the end of the side: then the ring offers a later
  /// port next time.
  [[nodiscard]] bool Place(std::size_t ring, Coord port, SidePoint size, LabelSpot& spot);

private:
  struct Ring {
    Coord offset = 0;     ///< From a label's low edge to its port.
    Coord v = 0;          ///< Where its labels begin, outward from the frame.
    Coord nextLow = 0;    ///< First u at which a label may begin.
    Coord notBefore = 0;  ///< First port past obstacles that were met.
  };

  [[nodiscard]] Coord BlockedUntil(const Ring& ring, Coord port, SidePoint low, SidePoint high) const;

  RingTask task_;
  std::vector<Ring> rings_;
  std::vector<SideBox> hindrances_;
  Coord nextPort_ = 0;
};

}  // namespace zrcallouts::placement
