#include "commands/LabelText.h"

namespace zrfigure {
namespace {

std::string Trimmed(std::string_view line) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = line.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return std::string(line.substr(first, line.find_last_not_of(kBlanks) - first + 1));
}

}  // namespace

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', begin)) {
    lines.push_back(Trimmed(text.substr(begin, end - begin)));
    begin = end + 1;
  }
  lines.push_back(Trimmed(text.substr(begin)));
  return lines;
}

}  // namespace zrfigure
