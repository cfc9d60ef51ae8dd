#pragma once
// The rows of the item list that a selection leads to: known before the run, so that the page can be divided between
// drawing and parts list, and so that hierarchical rows can be made in their order.

#include <cstdint>
#include <string>
#include <vector>

#include "commands/OccurrenceTree.h"

namespace zrfigure {

struct PlannedRow {
  int product = -1;
  std::vector<std::uint32_t> path;  ///< Outermost first; one number when numbered flat.
  std::vector<int> occurrences;     ///< Depth first in file order; not empty.
};

/// A row a product, numbered in order of its first selected occurrence. Members of a weldment count as the weldment.
[[nodiscard]] std::vector<PlannedRow> PlanFlatRows(const OccurrenceTree& tree, const std::vector<int>& selected);

/// As above with rows for the assemblies above the selection, the root left out, in depth-first order. A product takes
/// its path from its first occurrence: the next number below the row of the assembly that holds it.
[[nodiscard]] std::vector<PlannedRow> PlanHierarchicalRows(const OccurrenceTree& tree,
                                                           const std::vector<int>& selected);

/// The path's numbers joined by dots, e.g. "1.2".
[[nodiscard]] std::string JoinPath(const std::vector<std::uint32_t>& path);

}  // namespace zrfigure
