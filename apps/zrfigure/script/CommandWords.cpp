#include "script/CommandWords.h"

#include <charconv>
#include <utility>

#include "commands/PageFormat.h"

namespace zrfigure {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

/// Reads one word from `at` on and leaves `at` behind it.
class WordReader {
public:
  explicit WordReader(std::string_view line) : line_(line) {}

  /// False at the end of the line and at a comment.
  bool Next(std::string& word) {
    while (at_ < line_.size() && IsBlank(line_[at_])) ++at_;
    if (at_ == line_.size() || line_[at_] == '#') return false;
    word.clear();
    for (; at_ < line_.size() && !IsBlank(line_[at_]); ++at_) {
      const char c = line_[at_];
      if (c == '\'' || c == '"') {
        ReadQuoted(c, word);
      } else {
        word += c == '\\' ? Escaped() : c;
      }
    }
    return true;
  }

private:
  void ReadQuoted(char quote, std::string& word) {
    for (++at_; at_ < line_.size() && line_[at_] != quote; ++at_) {
      word += line_[at_] == '\\' && quote == '"' ? Escaped() : line_[at_];
    }
    if (at_ == line_.size()) throw CommandError{std::string("the quote ") + quote + " has no end"};
  }
  char Escaped() {
    if (++at_ == line_.size()) throw CommandError{"a backslash stands at the end of the line"};
    return line_[at_];
  }

  std::string_view line_;
  std::size_t at_ = 0;
};

}  // namespace

Words SplitWords(std::string_view line) {
  WordReader reader(line);
  Words words;
  for (std::string word; reader.Next(word);) words.push_back(std::exchange(word, {}));
  return words;
}

double NumberOf(const std::string& word, const char* what) {
  const auto number = ParseNumber(word);
  if (!number) throw CommandError{std::string(what) + " '" + word + "' is not a number"};
  return *number;
}

unsigned CountOf(const std::string& word, const char* what) {
  unsigned count = 0;
  const auto [end, code] = std::from_chars(word.data(), word.data() + word.size(), count);
  if (code == std::errc() && end == word.data() + word.size()) return count;
  throw CommandError{std::string(what) + " '" + word + "' is not a whole number of 0 or more"};
}

}  // namespace zrfigure
