#include "layout/placement/Audit.h"

#include <gtest/gtest.h>

namespace zrcallouts::placement {

namespace {

TEST(Audit, LeaderPiecesFromOneAnchorMeetOnlyWhereTheyRunTogether) {
  const FixedPoint anchor{10, 10};
  EXPECT_FALSE(LeaderSegmentsMeet(anchor, {30, 10}, anchor, {10, 40}));
  EXPECT_FALSE(LeaderSegmentsMeet(anchor, {30, 10}, anchor, {-30, 10}));
  EXPECT_TRUE(LeaderSegmentsMeet(anchor, {30, 10}, anchor, {90, 10}));
  EXPECT_TRUE(LeaderSegmentsMeet(anchor, {30, 10}, {30, 10}, {30, 40})) << "an end that is no shared anchor";
  EXPECT_TRUE(LeaderSegmentsMeet(anchor, {30, 10}, {20, 10}, {20, 40})) << "an anchor on the other's leader";
}

TEST(Audit, PrefersPlacesThenRoomThenOrderThenLength) {
  // Each one better than the next.
  const Tally order[] = {
      {}, {.length = 100}, {.labelsOverModel = 1}, {.crossings = 1}, {.labelOverlaps = 1}, {.unplaced = 1}};
  for (std::size_t i = 0; i < std::size(order); ++i)
    for (std::size_t j = 0; j < std::size(order); ++j) EXPECT_EQ(order[i].IsBetterThan(order[j]), i < j) << i << j;
}

TEST(Audit, NamesTheLongerOfTwoCrossingLeadersAndWhoPassesThroughALabel) {
  Scene scene;
  scene.page = {0, 0, 1000, 1000};
  scene.items = {
      {20, 20, {{100, 100}}, {100, 100}}, {20, 20, {{100, 200}}, {100, 200}}, {20, 20, {{500, 100}}, {500, 100}}};
  SpotList spots = {{true, {200, 200, 220, 220}, {200, 200}, {200, 200}},
                    {true, {300, 90, 320, 110}, {300, 100}, {300, 100}},
                    {true, {150, 90, 170, 110}, {170, 100}, {170, 100}}};
  EXPECT_EQ(Troublemakers(scene, spots), (std::vector<std::size_t>{1, 2}));
  spots[2] = {true, {600, 90, 620, 110}, {600, 100}, {600, 100}};
  EXPECT_EQ(Troublemakers(scene, spots), (std::vector<std::size_t>{1}));
}

}  // namespace

}  // namespace zrcallouts::placement
