#include "import/NameText.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace zrfigure {
namespace {

constexpr std::size_t kLongestName = 1000;  // in bytes; far more than any list shows
constexpr const char* kEllipsis = "\xE2\x80\xA6";

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsAllDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

/// Length of the valid sequence at the beginning of `text`, 0 when there is none. Overlong forms, surrogates and values
/// beyond U+10FFFF show in the second byte.
std::size_t ValidSequence(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const std::size_t length = text.empty() ? 0 : SequenceLength(byte(0));
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  if (byte(0) == 0xE0 && byte(1) < 0xA0) return 0;
  if (byte(0) == 0xED && byte(1) > 0x9F) return 0;
  if (byte(0) == 0xF0 && byte(1) < 0x90) return 0;
  if (byte(0) == 0xF4 && byte(1) > 0x8F) return 0;
  return length;
}

bool IsControl(std::string_view sequence) {
  const auto first = static_cast<unsigned char>(sequence[0]);
  const bool isC1 = sequence.size() == 2 && first == 0xC2 && static_cast<unsigned char>(sequence[1]) < 0xA0;
  return first < 0x20 || first == 0x7F || isC1;
}

}  // namespace

std::size_t ValidUtf8Prefix(std::string_view text) {
  std::size_t end = 0;
  while (const std::size_t length = ValidSequence(text.substr(end))) end += length;
  return end;
}

std::string CleanText(std::string_view text) {
  std::string clean;
  while (!text.empty()) {
    if (clean.size() >= kLongestName) return clean + kEllipsis;
    const std::size_t length = ValidSequence(text);
    const std::string_view sequence = text.substr(0, std::max<std::size_t>(length, 1));
    if (length > 0) {
      const bool isBlank = sequence == " " || IsControl(sequence);
      if (!isBlank) clean += sequence;
      if (isBlank && !clean.empty() && clean.back() != ' ') clean += ' ';
    }
    text.remove_prefix(sequence.size());
  }
  if (!clean.empty() && clean.back() == ' ') clean.pop_back();
  return clean;
}

bool IsInventedLink(std::string_view name) {
  return name.substr(0, 3) == "=>[" && name.back() == ']';
}

bool IsInventedName(std::string_view name) {
  static constexpr std::array<std::string_view, 9> kShapeTypes{"COMPOUND", "COMPSOLID", "SOLID",  "SHELL", "FACE",
                                                               "WIRE",     "EDGE",      "VERTEX", "SHAPE"};
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return name.empty() || IsInventedLink(name) ||
         std::find(kShapeTypes.begin(), kShapeTypes.end(), upper) != kShapeTypes.end();
}

std::string WithoutInstanceSuffix(const std::string& name) {
  const std::size_t separator = name.find_last_of(":_");
  if (separator == std::string::npos || separator == 0) return name;
  return IsAllDigits(std::string_view(name).substr(separator + 1)) ? name.substr(0, separator) : name;
}

bool IsVersionOf(std::string_view name, std::string_view id) {
  if (id.empty() || name.substr(0, id.size()) != id) return false;
  const std::string_view rest = name.substr(id.size());
  return rest.substr(0, 2) == " v" && IsAllDigits(rest.substr(2));
}

}  // namespace zrfigure
