#pragma once
// Bytes as what the program reads from people: templates and command lines. Each function says what does not hold of
// the answer; a crash speaks for itself.

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zrfuzz {

using Bytes = std::span<const std::uint8_t>;

/// JSON text of a label template: refused with one line that is not empty, or a template with an id and contents.
[[nodiscard]] std::optional<std::string> ReadTemplateInput(Bytes text);
/// Arguments, one a line: refused with one line, an output for people, or something to do, and never two of them.
[[nodiscard]] std::optional<std::string> ReadOptionsInput(Bytes lines);

}  // namespace zrfuzz
