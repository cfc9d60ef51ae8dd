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

/// The words of a line that is still being written.
struct OpenLine {
  Words words;            ///< Finished ones.
  std::string last;       ///< The word at the end as far as it is written; empty behind a blank.
  std::size_t begin = 0;  ///< Where that word begins in the line, its quote included.
};
/// Takes quotes and backslashes without end as unfinished. Nothing comes behind a `#` that begins a word.
[[nodiscard]] OpenLine SplitOpenLine(std::string_view line);

/// The word so that SplitWords gives it back: in double quotes when it needs them, the closing one only with `close`.
[[nodiscard]] std::string QuoteWord(const std::string& word, bool close);

/// A finite number. \throws CommandError that names the word and what it should be.
[[nodiscard]] double NumberOf(const std::string& word, const char* what);
/// A whole number of 0 or more. \throws CommandError as above.
[[nodiscard]] unsigned CountOf(const std::string& word, const char* what);

}  // namespace zrfigure
