#include "commands/Selection.h"

#include <algorithm>

namespace zrfigure {
namespace {

bool MatchesAny(const OccurrenceTree& tree, int occurrence, const std::vector<std::string>& globs) {
  return std::any_of(globs.begin(), globs.end(),
                     [&](const std::string& glob) { return tree.Matches(occurrence, glob); });
}

/// A flag an occurrence: it or an ancestor matches. Parents come before children, so one pass does.
std::vector<bool> FindMatched(const OccurrenceTree& tree, const std::vector<std::string>& globs) {
  const auto& occurrences = tree.GetModel().occurrences;
  std::vector<bool> matched(occurrences.size(), globs.empty());
  if (globs.empty()) return matched;
  for (std::size_t i = 0; i < occurrences.size(); ++i) {
    const int parent = occurrences[i].parent;
    matched[i] = (parent >= 0 && matched[parent]) || MatchesAny(tree, static_cast<int>(i), globs);
  }
  return matched;
}

/// The ancestor at depth `level`, or the occurrence itself when it stands above that.
int AncestorAtLevel(const OccurrenceTree& tree, int occurrence, unsigned level) {
  while (tree.Depth(occurrence) > level) occurrence = tree.GetModel().occurrences[occurrence].parent;
  return occurrence;
}

}  // namespace

std::vector<int> SelectOccurrences(const OccurrenceTree& tree, std::optional<unsigned> level,
                                   const std::vector<std::string>& globs) {
  const std::vector<bool> matched = FindMatched(tree, globs);
  std::vector<int> selected;
  for (int leaf : tree.Leaves()) {
    const int occurrence = level ? AncestorAtLevel(tree, leaf, *level) : leaf;
    // The leaves of one branch follow each other, so a repetition can only be the last entry.
    if (matched[occurrence] && (selected.empty() || selected.back() != occurrence)) selected.push_back(occurrence);
  }
  return selected;
}

std::optional<std::string> FindIdleGlob(const OccurrenceTree& tree, const std::vector<std::string>& globs) {
  for (const std::string& glob : globs) {
    const std::vector<int>& all = tree.DepthFirst();
    if (std::none_of(all.begin(), all.end(), [&](int occurrence) { return tree.Matches(occurrence, glob); }))
      return glob;
  }
  return std::nullopt;
}

}  // namespace zrfigure
