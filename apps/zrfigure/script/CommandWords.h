#pragma once
// Splits a line of a script into words, and words into numbers.

#include <string>
#include <string_view>

#include "script/Command.h"

namespace zrfigure {

/// Words are separated by blanks. `'...'` is taken as it is; in `"..."` and outside quotes a backslash takes the next
/// character as it is. `#` at the start of a word begins a comment. \throws CommandError for a quote without end and a
/// backslash at the end of the line.
[[nodiscard]] Words SplitWords(std::string_view line);

/// A finite number. \throws CommandError that names the word and what it should be.
[[nodiscard]] double NumberOf(const std::string& word, const char* what);
/// A whole number of 0 or more. \throws CommandError as above.
[[nodiscard]] unsigned CountOf(const std::string& word, const char* what);

}  // namespace zrfigure
