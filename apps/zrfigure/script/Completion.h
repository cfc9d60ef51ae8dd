#pragma once
// What a half-written command line can become.

#include <string>
#include <string_view>
#include <vector>

#include "script/Workspace.h"

namespace zrfigure {

/// What replaces the word at the end of a line.
struct Completion {
  std::size_t begin = 0;             ///< Where the word begins in the line.
  std::string replacement;           ///< As far as all choices agree; with a blank behind it when there is one choice.
  std::vector<std::string> choices;  ///< Whole words without quotes, sorted, each once.
};

/// Completes the word at the end of the line: command names, and what the command's usage has at that place, such as
/// part names, callout ids, item numbers, views, languages and files. Words are quoted when they need it.
[[nodiscard]] Completion CompleteLine(std::string_view line, const Workspace& workspace);

}  // namespace zrfigure
