#pragma once
// Labels of an earlier figure that shall stay where they stand.

#include <string>
#include <vector>

#include "commands/OccurrenceTree.h"
#include "drawing/Figure.h"

namespace zrfigure {

/// A label that stood on the page, by the part that its leader pointed at.
struct PinnedLabel {
  int occurrence = -1;
  Point2 at;  ///< Middle of the label, page pixels.
};

/// Reads a figure (.svg) or a report (.json). \throws CommandFailure that names the file.
[[nodiscard]] Figure ReadEarlierFigure(const std::string& path);

/// The labels of the figure whose parts the model still has, in the figure's order; each part once. Labels that pointed
/// at something hidden are left out.
[[nodiscard]] std::vector<PinnedLabel> FindPinnedLabels(const Figure& figure, const OccurrenceTree& tree);

}  // namespace zrfigure
