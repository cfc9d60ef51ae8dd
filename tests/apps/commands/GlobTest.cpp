#include "commands/Glob.h"

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

struct GlobCase {
  const char* pattern;
  const char* text;
  bool matches;
};

class GlobTest : public testing::TestWithParam<GlobCase> {};

TEST_P(GlobTest, AnswersAsTheShellDoes) {
  EXPECT_EQ(MatchesGlob(GetParam().pattern, GetParam().text), GetParam().matches)
      << GetParam().pattern << " on " << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Patterns, GlobTest,
                         testing::Values(GlobCase{"bolt", "bolt", true}, GlobCase{"bolt", "bolt_1", false},
                                         GlobCase{"bolt*", "bolt_1", true}, GlobCase{"*", "", true},
                                         GlobCase{"?", "", false}, GlobCase{"b?lt", "belt", true},
                                         GlobCase{"*a*b*c", "xxaxxbxabc", true}, GlobCase{"*a*b", "xbxa", false},
                                         GlobCase{"a/*", "a/b", true}, GlobCase{"a/*", "a/b/c", false},
                                         GlobCase{"a/**", "a/b/c", true}, GlobCase{"**/c", "a/b/c", true},
                                         GlobCase{"**/*x/c", "a/bx/d/ex/c", true}, GlobCase{"a/*/c", "a/b/b/c", false},
                                         GlobCase{"a?b", "a/b", false}, GlobCase{"[a-c]1", "b1", true},
                                         GlobCase{"[a-c]1", "d1", false}, GlobCase{"[!a-c]1", "d1", true},
                                         GlobCase{"[]]", "]", true}, GlobCase{"[a", "[a", true},
                                         GlobCase{"\\*", "*", true}, GlobCase{"\\*", "x", false}));

}  // namespace
}  // namespace zrfigure
