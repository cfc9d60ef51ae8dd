#pragma once
// Which occurrences get callouts.

#include <optional>
#include <string>
#include <vector>

#include "commands/OccurrenceTree.h"

namespace zrfigure {

/// The leaves, or the occurrences at depth `level` and the leaves above it, depth first in file order. Branches without
/// any shape are left out. With globs, only those that one of them selects: a glob selects the occurrences that it
/// matches, or, when it matches none of them, those below the assemblies that it matches.
[[nodiscard]] std::vector<int> SelectOccurrences(const OccurrenceTree& tree, std::optional<unsigned> level,
                                                 const std::vector<std::string>& globs);

/// The first glob that no occurrence matches; nothing when each has one.
[[nodiscard]] std::optional<std::string> FindIdleGlob(const OccurrenceTree& tree,
                                                      const std::vector<std::string>& globs);

}  // namespace zrfigure
