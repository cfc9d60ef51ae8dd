#include "commands/Selection.h"

#include <gtest/gtest.h>

#include "SmallAssembly.h"
#include "commands/Glob.h"
#include "commands/RowPlan.h"

namespace zrfigure {
namespace {

class SelectionTest : public testing::Test {
protected:
  const Model model_ = fixtures::MakePress();
  const OccurrenceTree tree_{model_, {}};
};

TEST_F(SelectionTest, YieldsOccurrencesInFileOrder) {
  struct SelectionCase {
    std::optional<unsigned> level;
    std::vector<std::string> globs;
    std::vector<int> expected;
  };
  const SelectionCase cases[] = {
      {{}, {}, {1, 3, 4, 6, 7, 8, 9}}, {0, {}, {0}},           {1, {}, {1, 2, 5, 8, 9}},  // with leaves above
      {7, {}, {1, 3, 4, 6, 7, 8, 9}},                                                     // deeper than the model
      {{}, {"*a*"}, {1, 3, 6}},                                                    // own matches before assemblies
      {{}, {"bolt"}, {4, 7, 8}},                                                   // a product
      {{}, {"bolt_1"}, {4, 7}},                                                    // instances
      {{}, {"clamp_2"}, {6, 7}},                                                   // an assembly brings its leaves
      {{}, {"clamp_1/*"}, {3, 4}},                                                 // a path below the root
      {{}, {"press/*/jaw"}, {3, 6}},                                               // a path from the root
      {{}, {"lid*", "base"}, {1, 9}},  {1, {"clamp"}, {2, 5}}, {1, {"jaw"}, {}}};  // below the level
  for (const auto& [level, globs, expected] : cases) {
    EXPECT_EQ(SelectOccurrences(tree_, level, globs), expected)
        << testing::PrintToString(level) << testing::PrintToString(globs);
  }
  Model model = model_;
  fixtures::AddOccurrence(model, 0, fixtures::AddProduct(model, "empty", true), "empty_1");
  EXPECT_EQ(SelectOccurrences(OccurrenceTree(model, {}), 1u, {}), (std::vector<int>{1, 2, 5, 8, 9})) << "no shape";
}

TEST_F(SelectionTest, NamesTheGlobThatMatchesNothing) {
  EXPECT_EQ(FindIdleGlob(tree_, {"bolt", "screw*"}), "screw*");
  EXPECT_EQ(FindIdleGlob(tree_, {"bolt", "press"}), std::nullopt);
}

TEST(GlobTest, AnswersAsTheShellDoes) {
  const auto expect = [](bool matches, std::initializer_list<const char*> patternsWithTexts) {
    for (const std::string both : patternsWithTexts) {
      const std::size_t blank = both.find(' ');
      EXPECT_EQ(MatchesGlob(both.substr(0, blank), both.substr(blank + 1)), matches) << both;
    }
  };
  expect(true, {"bolt bolt", "bolt* bolt_1", "* ", "b?lt belt", "*a*b*c xxaxxbxabc", "a/* a/b", "a/** a/b/c",
                "**/c a/b/c", "**/*x/c a/bx/d/ex/c", "[a-c]1 b1", "[!a-c]1 d1", "[]] ]", "[a [a", "\\* *"});
  expect(false, {"bolt bolt_1", "? ", "*a*b xbxa", "a/* a/b/c", "a/*/c a/b/b/c", "a?b a/b", "[a-c]1 d1", "\\* x"});
}

using Rows = std::vector<std::string>;

/// "path product quantity", a row each; with products welded, and a property of the press given.
Rows RowsOf(bool hierarchical, const std::vector<std::string>& welds = {}, const char* weldment = nullptr,
            std::optional<std::vector<int>> selected = {}) {
  Model model = fixtures::MakePress();
  if (weldment) model.products[0].properties["weldment"] = weldment;
  const OccurrenceTree tree(model, welds);
  if (!selected) selected = tree.Leaves();
  Rows texts;
  for (const PlannedRow& row : hierarchical ? PlanHierarchicalRows(tree, *selected) : PlanFlatRows(tree, *selected)) {
    texts.push_back(JoinPath(row.path) + " " + model.products[row.product].name + " " +
                    std::to_string(row.occurrences.size()));
  }
  return texts;
}

TEST(RowPlanTest, HierarchicalRowsNameAssembliesAndTheRootWhenItIsSelected) {
  EXPECT_EQ(RowsOf(true), (Rows{"1 base 1", "2 clamp 2", "2.1 jaw 2", "2.2 bolt 3", "3 lid 1"}));
  EXPECT_EQ(RowsOf(true, {}, nullptr, {{7, 9}}), (Rows{"1 clamp 1", "1.1 bolt 1", "2 lid 1"}));
  EXPECT_EQ(RowsOf(true, {}, nullptr, {{0}}), (Rows{"1 press 1"}));
}

TEST(RowPlanTest, MembersOfAWeldmentCountAsTheWeldment) {
  for (const bool hierarchical : {false, true}) {
    EXPECT_EQ(RowsOf(hierarchical, {"clamp"}), (Rows{"1 base 1", "2 clamp 2", "3 bolt 1", "4 lid 1"}));
  }
  EXPECT_EQ(RowsOf(false, {"clamp"}, "yes"), (Rows{"1 press 1"})) << "the outermost counts";
  EXPECT_EQ(RowsOf(false, {}, "No"), RowsOf(false));
}

}  // namespace
}  // namespace zrfigure
