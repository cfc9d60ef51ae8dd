#pragma once
// Callouts as balloons on the page.

#include <string>
#include <vector>

#include "commands/FigureComposer.h"

namespace zrfigure {

/// A balloon a callout, in their order, with the leaders that are not hidden. Leaders end in a dot where there is room
/// for one in the visible area of the part, else in an arrow; a leader to something that cannot be seen is dashed.
/// \param partIds by occurrence.
[[nodiscard]] std::vector<Balloon> ComposeBalloons(const FigureInput& input, const std::vector<std::string>& partIds);

/// Gives balloons their ids: the item's id, with "-2", "-3" ... for further callouts of the item; "text-1" ... without
/// item.
void NameBalloons(std::vector<Balloon>& balloons);

}  // namespace zrfigure
