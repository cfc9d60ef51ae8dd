#include "script/CommandWords.h"

#include <charconv>

#include "commands/PageFormat.h"

namespace zrfigure {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

/// Reads one word after the other.
class WordReader {
public:
  explicit WordReader(std::string_view line) : line_(line) {}

  /// False at the end of the line and at a comment.
  bool Next(std::string& word) {
    while (at_ < line_.size() && IsBlank(line_[at_])) ++at_;
    begin_ = at_;
    word.clear();
    if (AtEnd() || line_[at_] == '#') return false;
    for (; at_ < line_.size() && !IsBlank(line_[at_]); ++at_) {
      const char c = line_[at_];
      if (c == '\'' || c == '"') {
        ReadQuoted(c, word);
      } else if (c == '\\') {
        ReadEscaped(word);
      } else {
        word += c;
      }
    }
    return true;
  }

  /// Where the last word began.
  [[nodiscard]] std::size_t Begin() const { return begin_; }
  [[nodiscard]] bool AtEnd() const { return at_ >= line_.size(); }
  /// What is missing at the end of the line; empty when nothing is.
  [[nodiscard]] const std::string& Fault() const { return fault_; }

private:
  void ReadQuoted(char quote, std::string& word) {
    for (++at_; at_ < line_.size() && line_[at_] != quote; ++at_) {
      if (line_[at_] == '\\' && quote == '"') {
        ReadEscaped(word);
      } else {
        word += line_[at_];
      }
    }
    if (AtEnd()) fault_ = quote == '"' ? "the quote \" has no end" : "the quote ' has no end";
  }
  void ReadEscaped(std::string& word) {
    if (++at_ < line_.size()) {
      word += line_[at_];
    } else {
      fault_ = "a backslash stands at the end of the line";
    }
  }

  std::string_view line_;
  std::size_t at_ = 0;
  std::size_t begin_ = 0;
  std::string fault_;
};

}  // namespace

Words SplitWords(std::string_view line) {
  WordReader reader(line);
  Words words;
  for (std::string word; reader.Next(word);) words.push_back(word);
  if (!reader.Fault().empty()) throw CommandError{reader.Fault()};
  return words;
}

OpenLine SplitOpenLine(std::string_view line) {
  WordReader reader(line);
  OpenLine open;
  std::string word;
  while (reader.Next(word)) {
    if (reader.AtEnd()) {
      open.last = word;
      open.begin = reader.Begin();
      return open;
    }
    open.words.push_back(word);
  }
  open.begin = line.size();
  return open;
}

std::string QuoteWord(const std::string& word, bool close) {
  if (word.find_first_of(" \t\r'\"\\") == std::string::npos && !word.starts_with('#') && !(word.empty() && close)) {
    return word;
  }
  std::string quoted = "\"";
  for (const char c : word) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return close ? quoted + '"' : quoted;
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
