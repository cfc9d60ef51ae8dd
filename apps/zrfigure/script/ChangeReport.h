#pragma once
// What a command did to the callouts, told from how they stood before and after it.

#include <string>
#include <vector>

#include "commands/HostSession.h"

namespace zrfigure {

/// The differences between two states of the callouts, by id; leaders are compared by what they point at.
struct CalloutChanges {
  std::vector<unsigned> added;
  std::vector<unsigned> removed;
  std::vector<unsigned> relabelled;   ///< The text is another.
  std::vector<unsigned> labelsMoved;  ///< By more than a thousandth of a millimetre.
  std::size_t leadersAdded = 0;       ///< In callouts that are in both states, as all that follows.
  std::size_t leadersRemoved = 0;
  std::size_t leadersMoved = 0;
  std::size_t leadersShown = 0;
  std::size_t leadersHidden = 0;
};

[[nodiscard]] CalloutChanges CompareCallouts(const std::vector<CalloutState>& before,
                                             const std::vector<CalloutState>& after);

/// One line without line feed, e.g. "3 labels changed, callout 7 removed"; "no callout changed" when all is as before.
[[nodiscard]] std::string DescribeChanges(const CalloutChanges& changes);

/// Whether a leader is drawn as far as hiding and the visibility of its part decide.
[[nodiscard]] bool IsShown(const LeaderState& leader);

}  // namespace zrfigure
