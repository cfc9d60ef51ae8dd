#pragma once
// Shell-style patterns on names and paths.

#include <string_view>

namespace zrfigure {

/// Whether the whole text matches: `?` stands for one character, `*` for any run without '/', `**` for any run, `[a-z]`
/// and `[!a-z]` for one character of a set, `\` takes the next character as it is. A `[` without its `]` is literal.
/// Bytes are compared as they are, case-sensitively. Linear in the text for patterns with one kind of star.
[[nodiscard]] bool MatchesGlob(std::string_view pattern, std::string_view text);

}  // namespace zrfigure
