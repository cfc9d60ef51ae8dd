#pragma once
// Text from foreign files made safe for XML and for font libraries.

#include <string>
#include <string_view>

namespace zrfigure {

/// Length of the valid UTF-8 character at the start of `text`; 0 when there is none.
[[nodiscard]] std::size_t Utf8CharacterLength(std::string_view text);

/// `text` with every byte that is not UTF-8 and every character that XML 1.0 forbids replaced by U+FFFD.
[[nodiscard]] std::string XmlSafeText(std::string_view text);

}  // namespace zrfigure
