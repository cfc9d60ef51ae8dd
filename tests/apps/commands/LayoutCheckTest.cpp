#include "commands/LayoutCheck.h"

#include <tuple>

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

Balloon At(Box2 box, std::vector<Point2> leader = {}) {
  Balloon balloon;
  balloon.box = box;
  if (!leader.empty()) balloon.leaders = {{std::move(leader), LeaderEnd::Dot, false, ""}};
  return balloon;
}

TEST(LayoutCheckTest, CountsWhatIsThere) {
  struct FaultCase {
    const char* name;
    std::vector<Balloon> balloons;
    int crossings = 0, overlaps = 0, overModel = 0;
  };
  const Box2 top{0, 0, 20, 20}, below{0, 40, 20, 60};
  const Point2 topEnd{20, 10}, belowEnd{20, 50};
  const FaultCase cases[] = {
      {"tidy", {At(top, {{150, 150}, topEnd}), At(below, {{150, 160}, belowEnd})}},
      {"crossing", {At(top, {{150, 160}, topEnd}), At(below, {{150, 120}, belowEnd})}, 1},
      {"in the second leg", {At(top, {{150, 150}, {90, 30}, topEnd}), At(below, {{50, 0}, belowEnd})}, 1},
      {"shared anchor is fine", {At(top, {{150, 150}, topEnd}), At(below, {{150, 150}, belowEnd})}},
      {"one over the other", {At(top, {{150, 10}, topEnd}), At({30, 40, 50, 60}, {{150, 10}, {40, 10}, {40, 40}})}, 1},
      {"anchor on the other", {At(top, {{150, 10}, topEnd}), At({90, 40, 110, 60}, {{100, 10}, {100, 40}})}, 1},
      {"labels overlap", {At(top), At({10, 10, 30, 30})}, 0, 1},
      {"labels touch", {At(top), At({20, 0, 40, 20})}},
      {"leader through a label", {At(top, {{10, 150}, {10, 20}}), At(below)}, 0, 1},
      {"over the model", {At({190, 150, 230, 170})}, 0, 0, 1},
      {"beside the model", {At({200, 150, 230, 170})}}};
  for (const FaultCase& wanted : cases) {
    const LayoutFaults faults = CountLayoutFaults(wanted.balloons, {{100, 100, 200, 200}});
    EXPECT_EQ(std::tuple(faults.leaderCrossings, faults.labelOverlaps, faults.labelsOverModel),
              std::tuple(wanted.crossings, wanted.overlaps, wanted.overModel))
        << wanted.name;
  }
}

}  // namespace
}  // namespace zrfigure
