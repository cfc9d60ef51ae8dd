#pragma once
// Names as people should read them: valid UTF-8 without control characters, and without what readers made up
// themselves.

#include <string>
#include <string_view>

namespace zrfigure {

/// Bytes of the longest valid UTF-8 beginning of `text`.
[[nodiscard]] std::size_t ValidUtf8Prefix(std::string_view text);

/// `text` as valid UTF-8: broken sequences are dropped, control characters and runs of blanks become one blank, blanks
/// at both ends go. What is longer than any name can be is cut off, with an ellipsis.
[[nodiscard]] std::string CleanText(std::string_view text);

/// True for an empty name and for names that a reader invents for geometry without one: "SOLID", "Compound",
/// "=>[0:1:1:3]".
[[nodiscard]] bool IsInventedName(std::string_view name);

/// True for a link name such as "=>[0:1:1:3]", which no file holds.
[[nodiscard]] bool IsInventedLink(std::string_view name);

/// `name` without an instance suffix of the forms ":3" and "_3"; the whole name when nothing would be left.
[[nodiscard]] std::string WithoutInstanceSuffix(const std::string& name);

/// True when `name` is `id` followed by a version such as " v12".
[[nodiscard]] bool IsVersionOf(std::string_view name, std::string_view id);

}  // namespace zrfigure
