#pragma once

#include <string>

#include <du/Export.h>

namespace zrk::illustration {

/// The text with a backslash before each of \ ` * _ { } [ ] < > # | ~ so that markdown shows it as it stands. Escaping
/// twice escapes the backslashes too.
[[nodiscard]] ZR_HOST_API std::string PlainTextToMarkdown(const std::string& text);

}  // namespace zrk::illustration
