#include "commands/RowPlan.h"

#include <gtest/gtest.h>

#include "SmallAssembly.h"
#include "commands/Selection.h"

namespace zrfigure {
namespace {

/// "path product quantity", a row each.
std::vector<std::string> Describe(const Model& model, const std::vector<PlannedRow>& rows) {
  std::vector<std::string> texts;
  for (const PlannedRow& row : rows) {
    texts.push_back(JoinPath(row.path) + " " + model.products[row.product].name + " " +
                    std::to_string(row.occurrences.size()));
  }
  return texts;
}

using Rows = std::vector<std::string>;

TEST(RowPlanTest, FlatRowsCountProductsInOrderOfFirstOccurrence) {
  const Model model = fixtures::MakePress();
  const OccurrenceTree tree(model, {});
  EXPECT_EQ(Describe(model, PlanFlatRows(tree, tree.Leaves())), (Rows{"1 base 1", "2 jaw 2", "3 bolt 3", "4 lid 1"}));
  EXPECT_TRUE(PlanFlatRows(tree, {}).empty());
}

TEST(RowPlanTest, HierarchicalRowsNameAssembliesAndUseTheFirstOccurrence) {
  const Model model = fixtures::MakePress();
  const OccurrenceTree tree(model, {});
  EXPECT_EQ(Describe(model, PlanHierarchicalRows(tree, tree.Leaves())),
            (Rows{"1 base 1", "2 clamp 2", "2.1 jaw 2", "2.2 bolt 3", "3 lid 1"}));
  EXPECT_EQ(Describe(model, PlanHierarchicalRows(tree, {7, 9})), (Rows{"1 clamp 1", "1.1 bolt 1", "2 lid 1"}));
}

TEST(RowPlanTest, RootIsARowOnlyWhenItIsSelected) {
  const Model model = fixtures::MakePress();
  const OccurrenceTree tree(model, {});
  EXPECT_EQ(Describe(model, PlanHierarchicalRows(tree, {0})), (Rows{"1 press 1"}));
}

TEST(RowPlanTest, MembersOfAWeldmentCountAsTheWeldment) {
  Model model = fixtures::MakePress();
  const OccurrenceTree byName(model, {"clamp"});
  EXPECT_EQ(Describe(model, PlanFlatRows(byName, byName.Leaves())),
            (Rows{"1 base 1", "2 clamp 2", "3 bolt 1", "4 lid 1"}));
  EXPECT_EQ(Describe(model, PlanHierarchicalRows(byName, byName.Leaves())),
            (Rows{"1 base 1", "2 clamp 2", "3 bolt 1", "4 lid 1"}));

  model.products[0].properties["weldment"] = "yes";
  const OccurrenceTree outermost(model, {"clamp"});
  EXPECT_EQ(Describe(model, PlanFlatRows(outermost, outermost.Leaves())), (Rows{"1 press 1"}));

  model.products[0].properties["weldment"] = "No";
  const OccurrenceTree denied(model, {});
  EXPECT_EQ(PlanFlatRows(denied, denied.Leaves()).size(), 4u);
}

}  // namespace
}  // namespace zrfigure
