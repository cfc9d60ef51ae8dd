#include "commands/Selection.h"

#include <gtest/gtest.h>

#include "SmallAssembly.h"

namespace zrfigure {
namespace {

struct SelectionCase {
  const char* name;
  std::optional<unsigned> level;
  std::vector<std::string> globs;
  std::vector<int> expected;
};

class SelectionTest : public testing::TestWithParam<SelectionCase> {};

TEST_P(SelectionTest, YieldsOccurrencesInFileOrder) {
  const Model model = fixtures::MakePress();
  const OccurrenceTree tree(model, {});
  EXPECT_EQ(SelectOccurrences(tree, GetParam().level, GetParam().globs), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Press, SelectionTest,
                         testing::Values(SelectionCase{"Leaves", {}, {}, {1, 3, 4, 6, 7, 8, 9}},
                                         SelectionCase{"Root", 0, {}, {0}},
                                         SelectionCase{"LevelOneWithLeavesAbove", 1, {}, {1, 2, 5, 8, 9}},
                                         SelectionCase{"DeeperThanTheModel", 7, {}, {1, 3, 4, 6, 7, 8, 9}},
                                         SelectionCase{"OwnMatchesBeforeAssemblies", {}, {"*a*"}, {1, 3, 6}},
                                         SelectionCase{"ProductName", {}, {"bolt"}, {4, 7, 8}},
                                         SelectionCase{"InstanceName", {}, {"bolt_1"}, {4, 7}},
                                         SelectionCase{"AssemblyBringsItsLeaves", {}, {"clamp_2"}, {6, 7}},
                                         SelectionCase{"PathBelowTheRoot", {}, {"clamp_1/*"}, {3, 4}},
                                         SelectionCase{"PathFromTheRoot", {}, {"press/*/jaw"}, {3, 6}},
                                         SelectionCase{"TwoGlobs", {}, {"lid*", "base"}, {1, 9}},
                                         SelectionCase{"LevelAndGlob", 1, {"clamp"}, {2, 5}},
                                         SelectionCase{"LeafBelowTheLevel", 1, {"jaw"}, {}},
                                         SelectionCase{"Nothing", {}, {"nut"}, {}}),
                         [](const auto& entry) { return entry.param.name; });

TEST(SelectionTest, LeavesBranchesWithoutShapesOut) {
  Model model = fixtures::MakePress();
  fixtures::AddOccurrence(model, 0, fixtures::AddProduct(model, "empty", true), "empty_1");
  const OccurrenceTree tree(model, {});
  EXPECT_EQ(SelectOccurrences(tree, 1u, {}), (std::vector<int>{1, 2, 5, 8, 9}));
}

TEST(SelectionTest, NamesTheGlobThatMatchesNothing) {
  const Model model = fixtures::MakePress();
  const OccurrenceTree tree(model, {});
  EXPECT_EQ(FindIdleGlob(tree, {"bolt", "screw*"}), "screw*");
  EXPECT_EQ(FindIdleGlob(tree, {"bolt", "press"}), std::nullopt);
}

}  // namespace
}  // namespace zrfigure
