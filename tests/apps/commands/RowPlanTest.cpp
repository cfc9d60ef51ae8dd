#include "commands/RowPlan.h"

#include <optional>

#include <gtest/gtest.h>

#include "SmallAssembly.h"
#include "commands/Selection.h"

namespace zrfigure {
namespace {

using Rows = std::vector<std::string>;

/// "path product quantity", a row each.
Rows Describe(const Model& model, const std::vector<PlannedRow>& rows) {
  Rows texts;
  for (const PlannedRow& row : rows) {
    texts.push_back(JoinPath(row.path) + " " + model.products[row.product].name + " " +
                    std::to_string(row.occurrences.size()));
  }
  return texts;
}

/// With products welded, and a property of the press given.
Rows RowsOf(bool hierarchical, const std::vector<std::string>& welds = {}, const char* weldment = nullptr,
            std::optional<std::vector<int>> selected = {}) {
  Model model = fixtures::MakePress();
  if (weldment) model.products[0].properties["weldment"] = weldment;
  const OccurrenceTree tree(model, welds);
  if (!selected) selected = tree.Leaves();
  return Describe(model, hierarchical ? PlanHierarchicalRows(tree, *selected) : PlanFlatRows(tree, *selected));
}

TEST(RowPlanTest, FlatRowsCountProductsInOrderOfFirstOccurrence) {
  EXPECT_EQ(RowsOf(false), (Rows{"1 base 1", "2 jaw 2", "3 bolt 3", "4 lid 1"}));
  EXPECT_EQ(RowsOf(false, {}, nullptr, std::vector<int>()), Rows());
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
