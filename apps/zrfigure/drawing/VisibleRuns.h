#pragma once
// Removes the hidden parts of one candidate line of one occurrence.

#include <optional>

#include "drawing/LineArt.h"
#include "drawing/LineChain.h"

namespace zrfigure {

/// One occurrence as the viewer sees it; shared by all its lines.
struct OccurrenceView {
  const LineArtInput& input;
  int occurrence = -1;
  bool closed = false;  ///< See MeshLines::Closed().
  std::array<std::array<double, 3>, 3>
      normalMatrix{};  ///< Part normals to world: n' = n * normalMatrix, then unit length.

  OccurrenceView(const LineArtInput& lineArt, int index, bool closedMesh);
  /// The direction toward the viewer in part coordinates, such that signs of n.v agree with the world's.
  [[nodiscard]] Vec3 ToViewerInPart() const;
};

/// The visible pieces of `chain`, in its order and direction, split where the line class changes.
[[nodiscard]] std::vector<ArtLine> VisibleRuns(const OccurrenceView& view, const LineChain& chain);

}  // namespace zrfigure
