#include "commands/Glob.h"

#include <cstddef>

namespace zrfigure {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

/// Reads the set that opens at `open`. \return the position behind its ']', kNone when it is not closed.
std::size_t MatchSet(std::string_view pattern, std::size_t open, char c, bool& matches) {
  std::size_t at = open + 1;
  const bool negated = at < pattern.size() && (pattern[at] == '!' || pattern[at] == '^');
  if (negated) ++at;
  const std::size_t first = at;
  bool found = false;
  for (; at < pattern.size() && (pattern[at] != ']' || at == first); ++at) {
    const char low = pattern[at];
    const bool range = at + 2 < pattern.size() && pattern[at + 1] == '-' && pattern[at + 2] != ']';
    const char high = range ? pattern[at + 2] : low;
    if (range) at += 2;
    found = found || (low <= c && c <= high);
  }
  if (at >= pattern.size()) return kNone;
  matches = found != negated;
  return at + 1;
}

/// Matches one character of the text with one element of the pattern that is no star.
/// \return the position behind the element, kNone when it does not match.
std::size_t MatchOne(std::string_view pattern, std::size_t at, char c) {
  if (pattern[at] == '?') return c == '/' ? kNone : at + 1;
  if (pattern[at] == '[') {
    bool matches = false;
    const std::size_t behind = MatchSet(pattern, at, c, matches);
    if (behind != kNone) return matches ? behind : kNone;
  }
  if (pattern[at] == '\\' && at + 1 < pattern.size()) ++at;
  return pattern[at] == c ? at + 1 : kNone;
}

/// Where to go on when the characters after a star do not match: the star takes one character more.
struct Star {
  std::size_t behind = kNone;  ///< Position in the pattern after the star.
  std::size_t text = 0;        ///< First character of the text that the star does not take yet.
};

}  // namespace

bool MatchesGlob(std::string_view pattern, std::string_view text) {
  // Greedy matching with two ways back: to the last star, and from there to the last double star. Earlier stars never
  // need to be tried again, as whatever they could take instead the later one can take as well.
  Star single;
  Star any;
  std::size_t p = 0;
  std::size_t t = 0;
  while (t < text.size() || p < pattern.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      const bool crosses = p + 1 < pattern.size() && pattern[p + 1] == '*';
      while (p < pattern.size() && pattern[p] == '*') ++p;
      (crosses ? any : single) = {p, t};
      if (crosses) single = {};
      continue;
    }
    const std::size_t next = p < pattern.size() && t < text.size() ? MatchOne(pattern, p, text[t]) : kNone;
    if (next != kNone) {
      p = next;
      ++t;
    } else if (single.behind != kNone && single.text < text.size() && text[single.text] != '/') {
      p = single.behind;
      t = ++single.text;
    } else if (any.behind != kNone && any.text < text.size()) {
      p = any.behind;
      t = ++any.text;
      single = {};
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace zrfigure
