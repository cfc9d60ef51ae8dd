#pragma once
// A table for a terminal.

#include <string>
#include <vector>

namespace zrfigure {

/// Columns as wide as their longest cell, two blanks apart, headings in the first line.
class TextTable {
public:
  explicit TextTable(std::vector<std::string> headings);
  /// A row with as many cells as there are headings; line feeds become " / ".
  void Add(std::vector<std::string> cells);
  [[nodiscard]] std::string Text() const;

private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace zrfigure
