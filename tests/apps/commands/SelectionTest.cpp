#include "commands/Selection.h"

#include <gtest/gtest.h>

#include "SmallAssembly.h"

namespace zrfigure {
namespace {

class SelectionTest : public testing::Test {
protected:
  const Model model_ = fixtures::MakePress();
  const OccurrenceTree tree_{model_, {}};
};

TEST_F(SelectionTest, YieldsOccurrencesInFileOrder) {
  struct SelectionCase {
    const char* name;
    std::optional<unsigned> level;
    std::vector<std::string> globs;
    std::vector<int> expected;
  };
  const SelectionCase cases[] = {{"leaves", {}, {}, {1, 3, 4, 6, 7, 8, 9}},
                                 {"root", 0, {}, {0}},
                                 {"level one with leaves above", 1, {}, {1, 2, 5, 8, 9}},
                                 {"deeper than the model", 7, {}, {1, 3, 4, 6, 7, 8, 9}},
                                 {"own matches before assemblies", {}, {"*a*"}, {1, 3, 6}},
                                 {"product name", {}, {"bolt"}, {4, 7, 8}},
                                 {"instance name", {}, {"bolt_1"}, {4, 7}},
                                 {"assembly brings its leaves", {}, {"clamp_2"}, {6, 7}},
                                 {"path below the root", {}, {"clamp_1/*"}, {3, 4}},
                                 {"path from the root", {}, {"press/*/jaw"}, {3, 6}},
                                 {"two globs", {}, {"lid*", "base"}, {1, 9}},
                                 {"level and glob", 1, {"clamp"}, {2, 5}},
                                 {"leaf below the level", 1, {"jaw"}, {}}};
  for (const SelectionCase& wanted : cases) {
    EXPECT_EQ(SelectOccurrences(tree_, wanted.level, wanted.globs), wanted.expected) << wanted.name;
  }
}

TEST_F(SelectionTest, LeavesBranchesWithoutShapesOut) {
  Model model = model_;
  fixtures::AddOccurrence(model, 0, fixtures::AddProduct(model, "empty", true), "empty_1");
  EXPECT_EQ(SelectOccurrences(OccurrenceTree(model, {}), 1u, {}), (std::vector<int>{1, 2, 5, 8, 9}));
}

TEST_F(SelectionTest, NamesTheGlobThatMatchesNothing) {
  EXPECT_EQ(FindIdleGlob(tree_, {"bolt", "screw*"}), "screw*");
  EXPECT_EQ(FindIdleGlob(tree_, {"bolt", "press"}), std::nullopt);
}

}  // namespace
}  // namespace zrfigure
