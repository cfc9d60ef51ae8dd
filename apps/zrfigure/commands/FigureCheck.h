#pragma once
// Rules that a figure with callouts has to keep, and who breaks them.

#include <string>
#include <string_view>
#include <vector>

#include "drawing/Figure.h"

namespace zrfigure {

/// A rule with its stable name and what it asks for, in one sentence.
struct FigureRule {
  std::string_view id;
  std::string_view text;
};

/// All rules, in the order in which findings are reported.
[[nodiscard]] const std::vector<FigureRule>& FigureRules();

/// A breach of a rule.
struct FigureFinding {
  std::string rule;     ///< FigureRule::id.
  std::string element;  ///< Id in the figure that it is about, e.g. "callout-7" or "row-3".
  std::string message;  ///< One sentence.
};

/// Looks over a figure's pages, the first of which has the drawing. Findings come by rule, then in the order of the
/// figure. Without any row on the pages the rules about the list are not applied, and where parts have no areas the
/// one about leader ends is not.
[[nodiscard]] std::vector<FigureFinding> CheckFigure(const std::vector<Figure>& pages);

}  // namespace zrfigure
