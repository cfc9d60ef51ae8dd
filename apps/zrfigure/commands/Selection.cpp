#include "commands/Selection.h"

#include <algorithm>

namespace zrfigure {
namespace {

/// A flag an occurrence: it or an ancestor matches. Parents come before children, so one pass does.
std::vector<bool> FindAtOrBelow(const OccurrenceTree& tree, const std::string& glob) {
  const auto& occurrences = tree.GetModel().occurrences;
  std::vector<bool> found(occurrences.size());
  for (std::size_t i = 0; i < occurrences.size(); ++i) {
    const int parent = occurrences[i].parent;
    found[i] = (parent >= 0 && found[parent]) || tree.Matches(static_cast<int>(i), glob);
  }
  return found;
}

/// Marks what the glob selects of the candidates.
void MarkSelected(const OccurrenceTree& tree, const std::vector<int>& candidates, const std::string& glob,
                  std::vector<bool>& marked) {
  bool matchesOne = false;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (!tree.Matches(candidates[i], glob)) continue;
    marked[i] = true;
    matchesOne = true;
  }
  if (matchesOne) return;
  const std::vector<bool> atOrBelow = FindAtOrBelow(tree, glob);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (atOrBelow[candidates[i]]) marked[i] = true;
  }
}

/// The ancestor at depth `level`, or the occurrence itself when it stands above that.
int AncestorAtLevel(const OccurrenceTree& tree, int occurrence, unsigned level) {
  while (tree.Depth(occurrence) > level) occurrence = tree.GetModel().occurrences[occurrence].parent;
  return occurrence;
}

}  // namespace

std::vector<int> SelectOccurrences(const OccurrenceTree& tree, std::optional<unsigned> level,
                                   const std::vector<std::string>& globs) {
  std::vector<int> candidates;
  for (int leaf : tree.Leaves()) {
    const int occurrence = level ? AncestorAtLevel(tree, leaf, *level) : leaf;
    // The leaves of one branch follow each other, so a repetition can only be the last entry.
    if (candidates.empty() || candidates.back() != occurrence) candidates.push_back(occurrence);
  }
  if (globs.empty()) return candidates;
  std::vector<bool> marked(candidates.size(), false);
  for (const std::string& glob : globs) MarkSelected(tree, candidates, glob, marked);
  std::vector<int> selected;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (marked[i]) selected.push_back(candidates[i]);
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
