#pragma once
// Label texts cut into the lines that are drawn.

#include <string>
#include <string_view>
#include <vector>

namespace zrfigure {

/// The text's lines without blanks at their ends; at least one, which may be empty.
[[nodiscard]] std::vector<std::string> SplitLines(std::string_view text);

}  // namespace zrfigure
