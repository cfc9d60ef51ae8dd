#include "layout/placement/Placement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>

#include "layout/Requests.h"

namespace zrcallouts::placement {

namespace {

using testing::RandomRequest;
using testing::RequestShape;

void ExpectHonestCounts(const PlacementRequest& request, const PlacementResult& result) {
  const testing::Counts counts = testing::CountByBruteForce(request, result);
  EXPECT_EQ(testing::CountsOf(result), counts);
  EXPECT_EQ(result.status, counts.back() != 0            ? PlacementStatus::Incomplete
                           : counts == testing::Counts() ? PlacementStatus::Complete
                                                         : PlacementStatus::Degraded);
}

bool SameLabels(const PlacedLabel& a, const PlacedLabel& b) {
  return a.placed == b.placed && a.box == b.box && a.leaders == b.leaders;
}

/// The label has its size, and each leader starts at its anchor, has one bend at most and ends on the label's edge, but
/// for a label that covers all its anchors.
void ExpectWhole(const LabelRequest& request, const PlacedLabel& label) {
  const Box& box = label.box;
  EXPECT_EQ(box.right - box.left, request.width);
  EXPECT_EQ(box.bottom - box.top, request.height);
  ASSERT_EQ(label.leaders.size(), request.anchors.size());
  for (std::size_t k = 0; k < label.leaders.size(); ++k) {
    const auto& leader = label.leaders[k];
    ASSERT_TRUE(leader.size() == 2 || leader.size() == 3);
    EXPECT_EQ(leader.front(), request.anchors[k]);
    const Point end = leader.back();
    const bool inside = box.left <= end.x && end.x <= box.right && box.top <= end.y && end.y <= box.bottom;
    const bool onEdge = end.x == box.left || end.x == box.right || end.y == box.top || end.y == box.bottom;
    const bool covers = std::ranges::all_of(request.anchors, [&](Point anchor) {
      return box.left <= anchor.x && anchor.x <= box.right && box.top <= anchor.y && anchor.y <= box.bottom;
    });
    EXPECT_TRUE(inside && (onEdge || covers));
  }
}

TEST(Placement, BreaksNoRuleWhereThereIsRoomElseCountsHonestlyAndIsTheSameInAnyOrder) {
  const RequestShape shapes[] = {
      {.name = "one label", .labels = 1},
      {.name = "balloons", .labels = 50},
      {.name = "two rings", .labels = 130},
      {.name = "mixed sizes", .labels = 40, .mixedSizes = true},
      {.name = "stacks", .labels = 90, .pageWidth = 1920, .pageHeight = 1200, .mixedSizes = true},
      {.name = "balloons and obstacles", .labels = 60, .obstacles = 12},
      {.name = "several leaders", .labels = 40, .mostAnchors = 3},
      {.name = "mixed, several leaders", .labels = 25, .mixedSizes = true, .mostAnchors = 3},
      {.name = "model fills page", .labels = 80, .fill = 0.98},
      {.name = "mixed on full page", .labels = 30, .fill = 0.95, .mixedSizes = true},
      {.name = "too many", .labels = 60, .pageWidth = 300, .pageHeight = 200, .mostAnchors = 2, .obstacles = 3}};
  for (unsigned run = 0; run < 5 * std::size(shapes); ++run) {
    const RequestShape& shape = shapes[run / 5];
    const unsigned seed = 1 + run % 5;
    SCOPED_TRACE(shape.name + ", seed " + std::to_string(seed));
    const PlacementRequest request = RandomRequest(shape, seed);
    const PlacementResult result = PlaceLabels(request);
    ExpectHonestCounts(request, result);
    EXPECT_TRUE(result.status == PlacementStatus::Complete || &shape >= shapes + 5);
    PlacementRequest shuffled = request;
    std::vector<std::size_t> order(request.labels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::shuffle(order.begin(), order.end(), std::mt19937(seed));
    for (std::size_t k = 0; k < order.size(); ++k) shuffled.labels[k] = request.labels[order[k]];
    std::reverse(shuffled.obstacles.begin(), shuffled.obstacles.end());
    const PlacementResult again = PlaceLabels(shuffled);
    for (std::size_t k = 0; k < order.size(); ++k) {
      const PlacedLabel& label = result.labels[order[k]];
      EXPECT_TRUE(SameLabels(again.labels[k], label)) << "label " << order[k];
      if (label.placed) ExpectWhole(shuffled.labels[k], label);
    }
  }
}

TEST(Placement, CoversTheModelWhereThePageHasNoRoom) {
  const PlacementResult full = PlaceLabels(RandomRequest({.name = "", .labels = 50, .fill = 0.98}, 1));
  EXPECT_EQ(full.status, PlacementStatus::Degraded);
  EXPECT_EQ(full.labelsOverModel, 50);
  EXPECT_EQ(full.leaderCrossings + full.labelOverlaps + full.labelsOutsidePage + full.unplaced, 0);
}

constexpr Box kPage{0, 0, 1000, 800}, kModel{300, 200, 700, 600};

TEST(Placement, LeadersAreStraightAndPerpendicularWhenNothingIsInTheWay) {
  const PlacementResult result = PlaceLabels(
      {kPage, kModel, {}, {{"1", 24, 24, {{500, 210}}}, {"2", 24, 24, {{690, 400}}}, {"3", 24, 24, {{320, 300}}}}, {}});
  const std::vector<Point> expected[] = {{{500, 210}, {500, 180}}, {{690, 400}, {720, 400}}, {{320, 300}, {280, 300}}};
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(result.labels[i].leaders[0], expected[i]);
}

TEST(Placement, EqualAnchorsAreServedInNaturalOrderOfTheirIds) {
  PlacementRequest request{kPage, kModel, {}, {}, {}};
  for (const char* id : {"10", "9", "2"}) request.labels.push_back({id, 24, 24, {{500, 210}}});
  const PlacementResult first = PlaceLabels(request);
  std::reverse(request.labels.begin(), request.labels.end());
  const PlacementResult second = PlaceLabels(request);
  EXPECT_EQ(first.leaderCrossings, 0);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(SameLabels(first.labels[i], second.labels[2 - i]));
  EXPECT_NE(first.labels[0].box, first.labels[1].box);
}

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

/// Equal labels whose ids do not tell them apart.
std::vector<LabelRequest> Equal(std::size_t count, double width = 30, std::vector<Point> anchors = {{400, 300}}) {
  return std::vector<LabelRequest>(count, {"a", width, 20, std::move(anchors)});
}

TEST(Placement, OddRequestsGetAStatusAndCountsInsteadOfFailing) {
  using enum PlacementStatus;
  const Box page{0, 0, 800, 600}, model{250, 200, 550, 400};
  const LabelRequest good{"b", 30, 20, {{300, 300}}}, inf{"c", 30, 20, {{kInf, kInf}, {400, 300}}};
  const struct {
    const char* name;
    PlacementRequest request;
    PlacementStatus status = Complete;
    int unplaced = 0;
  } requests[] = {
      {"no labels", {page, model, {}, {}, {}}},
      {"no anchors", {page, model, {}, Equal(5, 30, {}), {}}},
      {"one shared anchor", {page, model, {}, Equal(40), {}}},
      {"anchors on one line", {page, model, {}, {Equal(1)[0], good, {"c", 30, 20, {{500, 300}}}}, {}}},
      {"no size", {page, model, {}, {{"a", 0, 0, {{400, 300}}}, {"b", 0, 0, {{400, 300}}}}, {}}},
      {"sizes that are none", {page, model, {}, {{"a", kNan, -5, {{400, 300}}}, {"b", kInf, 20, {{300, 300}}}}, {}}},
      {"anchors that are none", {page, model, {}, {{"a", 30, 20, {{kNan, 1}}}, inf}, {}}},
      {"anchor off the page", {page, model, {}, Equal(1, 30, {{-900, 5000}}), {}}},
      {"label larger than page", {page, model, {}, {Equal(1, 900)[0], good}, {}}, Incomplete, 1},
      {"no page", {{}, model, {}, Equal(2), {}}, Incomplete, 2},
      {"page that is none", {{kNan, 0, kInf, -kInf}, model, {}, Equal(2), {}}},
      {"everything blocked", {page, model, {{-10, -10, 900, 700}}, Equal(2), {}}, Incomplete, 2},
      {"model of no size", {page, {400, 300, 400, 300}, {}, Equal(9), {}}},
      {"model larger than page", {page, {-500, -500, 2000, 2000}, {}, {Equal(1)[0], good}, {}}, Degraded},
      {"options that are none", {page, model, {}, Equal(3), {kNan, -4, 0}}}};
  for (const auto& odd : requests) {
    SCOPED_TRACE(odd.name);
    const PlacementResult result = PlaceLabels(odd.request);
    EXPECT_EQ(result.labels.size(), odd.request.labels.size());
    EXPECT_EQ(result.status, odd.status);
    EXPECT_EQ(result.unplaced, odd.unplaced);
    for (const PlacedLabel& label : result.labels)
      for (const auto& leader : label.leaders)
        for (const Point& point : leader) EXPECT_TRUE(std::isfinite(point.x) && std::isfinite(point.y));
  }
}

}  // namespace

}  // namespace zrcallouts::placement
