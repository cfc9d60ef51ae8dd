#pragma once
// Findings of a check for people and for programs.

#include <string>
#include <vector>

#include "commands/FigureCheck.h"
#include "commands/Options.h"

namespace zrfigure {

/// The findings about `file`: a line each and a last one with their number; one JSON object; or a SARIF 2.1.0 log with
/// all rules, which tools for code review show.
[[nodiscard]] std::string FindingsText(const std::string& file, const std::vector<FigureFinding>& findings,
                                       FindingFormat format);

}  // namespace zrfigure
