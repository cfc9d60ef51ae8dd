#pragma once
// What an HTML page says besides its figure.

#include <string>

namespace zrfigure {

struct HtmlTexts {
  const char* language;  ///< As in the `lang` attribute.
  const char* search;
  const char* count;  ///< "{0}" rows left of "{1}".
  const char* help;
  const char* listHelp;  ///< The same for a page without pictures.
};

/// English for a language that is not there.
[[nodiscard]] const HtmlTexts& HtmlTextsIn(const std::string& language);

}  // namespace zrfigure
