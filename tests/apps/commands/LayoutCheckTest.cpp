#include "commands/LayoutCheck.h"

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

Balloon MakeBalloon(Box2 box, std::vector<std::vector<Point2>> leaders) {
  Balloon balloon;
  balloon.box = box;
  for (auto& points : leaders) balloon.leaders.push_back({std::move(points), LeaderEnd::Dot, false, ""});
  return balloon;
}

struct FaultCase {
  const char* name;
  std::vector<Balloon> balloons;
  LayoutFaults expected;
};

class LayoutCheckTest : public testing::TestWithParam<FaultCase> {};

TEST_P(LayoutCheckTest, CountsWhatIsThere) {
  const LayoutFaults faults = CountLayoutFaults(GetParam().balloons, {{100, 100, 200, 200}});
  EXPECT_EQ(faults.leaderCrossings, GetParam().expected.leaderCrossings);
  EXPECT_EQ(faults.labelOverlaps, GetParam().expected.labelOverlaps);
  EXPECT_EQ(faults.labelsOverModel, GetParam().expected.labelsOverModel);
}

const Box2 kTop{0, 0, 20, 20};
const Box2 kBelow{0, 40, 20, 60};

INSTANTIATE_TEST_SUITE_P(
    Figures, LayoutCheckTest,
    testing::Values(
        FaultCase{
            "Tidy", {MakeBalloon(kTop, {{{150, 150}, {20, 10}}}), MakeBalloon(kBelow, {{{150, 160}, {20, 50}}})}, {}},
        FaultCase{"Crossing",
                  {MakeBalloon(kTop, {{{150, 160}, {20, 10}}}), MakeBalloon(kBelow, {{{150, 120}, {20, 50}}})},
                  {1, 0, 0}},
        FaultCase{"CrossingInTheSecondLeg",
                  {MakeBalloon(kTop, {{{150, 150}, {90, 30}, {20, 10}}}), MakeBalloon(kBelow, {{{50, 0}, {20, 50}}})},
                  {1, 0, 0}},
        FaultCase{"SharedAnchorIsFine",
                  {MakeBalloon(kTop, {{{150, 150}, {20, 10}}}), MakeBalloon(kBelow, {{{150, 150}, {20, 50}}})},
                  {}},
        FaultCase{"OneLeaderOverTheOther",
                  {MakeBalloon(kTop, {{{150, 10}, {20, 10}}}),
                   MakeBalloon({30, 40, 50, 60}, {{{150, 10}, {40, 10}, {40, 40}}})},
                  {1, 0, 0}},
        FaultCase{
            "AnchorOnAnotherLeader",
            {MakeBalloon(kTop, {{{150, 10}, {20, 10}}}), MakeBalloon({90, 40, 110, 60}, {{{100, 10}, {100, 40}}})},
            {1, 0, 0}},
        FaultCase{"BalloonsOverlap", {MakeBalloon(kTop, {}), MakeBalloon({10, 10, 30, 30}, {})}, {0, 1, 0}},
        FaultCase{"BalloonsTouch", {MakeBalloon(kTop, {}), MakeBalloon({20, 0, 40, 20}, {})}, {}},
        FaultCase{
            "LeaderThroughABalloon", {MakeBalloon(kTop, {{{10, 150}, {10, 20}}}), MakeBalloon(kBelow, {})}, {0, 1, 0}},
        FaultCase{"OverTheModel", {MakeBalloon({190, 150, 230, 170}, {})}, {0, 0, 1}},
        FaultCase{"BesideTheModel", {MakeBalloon({200, 150, 230, 170}, {})}, {}}),
    [](const auto& entry) { return entry.param.name; });

}  // namespace
}  // namespace zrfigure
