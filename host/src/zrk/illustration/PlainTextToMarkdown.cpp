#include <zrk/illustration/PlainTextToMarkdown.h>

#include <string_view>

namespace zrk::illustration {

std::string PlainTextToMarkdown(const std::string& text) {
  constexpr std::string_view kSpecial = "\\`*_{}[]<>#|~";
  std::string escaped;
  escaped.reserve(text.size());
  for (const char character : text) {
    if (kSpecial.find(character) != std::string_view::npos) escaped += '\\';
    escaped += character;
  }
  return escaped;
}

}  // namespace zrk::illustration
