#pragma once
// The whole chain from a model to the pages of its figure, without any file.

#include <vector>

#include "commands/Options.h"
#include "commands/Report.h"
#include "drawing/Figure.h"
#include "drawing/PartsList.h"

namespace zrfigure {

/// A figure with its parts list and what there is to say about it.
struct FigureDocument {
  std::vector<Figure> pages;  ///< The figure, then what of the parts list found no room on its page.
  PartsList list;
  Report report;  ///< Without outputs.
};

/// Imports the model, creates its callouts in the host and draws the pages. Starts the import's child process first, so
/// no other thread may run yet. \throws CommandFailure. [host-thread]
[[nodiscard]] FigureDocument MakeFigure(const Options& options);

}  // namespace zrfigure
