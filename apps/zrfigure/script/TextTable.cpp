#include "script/TextTable.h"

#include <algorithm>
#include <utility>

namespace zrfigure {
namespace {

/// Characters of a UTF-8 text.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

TextTable::TextTable(std::vector<std::string> headings) : rows_{std::move(headings)} {}

void TextTable::Add(std::vector<std::string> cells) {
  for (std::string& cell : cells) {
    for (auto at = cell.find('\n'); at != std::string::npos; at = cell.find('\n')) cell.replace(at, 1, " / ");
  }
  rows_.push_back(std::move(cells));
}

std::string TextTable::Text() const {
  std::vector<std::size_t> widths(rows_.front().size(), 0);
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], WidthOf(row[i]));
  }
  std::string text;
  for (const auto& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) line += row[i] + std::string(widths[i] - WidthOf(row[i]) + 2, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

}  // namespace zrfigure
