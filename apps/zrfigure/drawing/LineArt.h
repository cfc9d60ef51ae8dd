#pragma once
// The lines a draughtsman would draw of a model: sharp edges and silhouettes, hidden parts removed.

#include <vector>

#include "visibility/IdBuffer.h"
#include "visibility/VisibilityScene.h"

namespace zrfigure {

enum class LineClass {
  Outline,  ///< Separates an occurrence from the background or from another one: wide.
  Edge,     ///< Inside one occurrence: narrow.
};

/// A visible line in pixel space of the view it was made for.
struct ArtLine {
  int occurrence = -1;  ///< Index into Model::occurrences.
  LineClass lineClass = LineClass::Edge;
  std::vector<Point2> points;  ///< At least two; first equals last when the line is closed.
};

/// What the lines are made from; all must describe the same occurrences and view.
struct LineArtInput {
  const Model& model;
  const VisibilityScene& scene;
  const View& view;
  const IdBuffer& ids;
  std::span<const int> leaves;
};

/// The visible lines, ascending by occurrence. The same input gives the same lines, whatever the number of threads.
[[nodiscard]] std::vector<ArtLine> DrawLineArt(const LineArtInput& input);

}  // namespace zrfigure
