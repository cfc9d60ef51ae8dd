#include "drawing/Utf8.h"

namespace zrfigure {
namespace {

unsigned char Byte(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

std::size_t LengthByLead(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

bool IsForbiddenInXml(std::string_view character) {
  const unsigned char first = Byte(character, 0);
  if (first < 0x20) return first != '\t' && first != '\n' && first != '\r';
  return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

}  // namespace

std::size_t Utf8CharacterLength(std::string_view text) {
  if (text.empty()) return 0;
  const unsigned char lead = Byte(text, 0);
  const std::size_t length = LengthByLead(lead);
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((Byte(text, i) & 0xC0) != 0x80) return 0;
  }
  const unsigned char second = length > 2 ? Byte(text, 1) : 0;
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool surrogate = lead == 0xED && second >= 0xA0;
  const bool beyond = lead == 0xF4 && second >= 0x90;
  return overlong || surrogate || beyond ? 0 : length;
}

std::string XmlSafeText(std::string_view text) {
  static constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  std::string clean;
  while (!text.empty()) {
    const std::size_t length = Utf8CharacterLength(text);
    const std::string_view character = text.substr(0, std::max<std::size_t>(1, length));
    clean += length == 0 || IsForbiddenInXml(character) ? kReplacement : character;
    text.remove_prefix(character.size());
  }
  return clean;
}

}  // namespace zrfigure
