#include "MarkdownText.h"

#include <cctype>
#include <cstring>

namespace zrannotations {

namespace {

bool IsWordAt(const std::string& text, std::size_t position) {
  if (position >= text.size()) return false;
  const auto character = static_cast<unsigned char>(text[position]);
  return std::isalnum(character) != 0 || character >= 0x80;
}

bool IsMark(const std::string& text, std::size_t position) {
  const char character = text[position];
  if (character == '*' || character == '`' || character == '~') return true;
  return character == '_' && !(position > 0 && IsWordAt(text, position - 1) && IsWordAt(text, position + 1));
}

}  // namespace

std::string StripMarkdown(const std::string& markdown) {
  std::string plain;
  bool atLineStart = true;
  for (std::size_t i = 0; i < markdown.size(); ++i) {
    const char character = markdown[i];
    if (character == '\\' && i + 1 < markdown.size() && std::ispunct(static_cast<unsigned char>(markdown[i + 1]))) {
      plain += markdown[++i];
    } else if (atLineStart && character == '#') {
      while (i + 1 < markdown.size() && std::strchr("# ", markdown[i + 1]) != nullptr) ++i;
    } else if (!IsMark(markdown, i)) {
      plain += character;
    }
    atLineStart = character == '\n';
  }
  return plain;
}

}  // namespace zrannotations
