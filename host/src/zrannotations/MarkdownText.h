#pragma once

#include <string>

namespace zrannotations {

/// The text without markdown: escapes resolved, marks of emphasis, code and headings left out. An underscore inside a
/// word is text.
[[nodiscard]] std::string StripMarkdown(const std::string& markdown);

}  // namespace zrannotations
