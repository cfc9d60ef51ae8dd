#include "layout/placement/Placement.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

#include "layout/Requests.h"

namespace zrcallouts::placement {

namespace {

using testing::RandomRequest;
using testing::RequestShape;

void ExpectHonestCounts(const PlacementRequest& request, const PlacementResult& result) {
  testing::Counts counts = testing::CountByBruteForce(request, result);
  EXPECT_EQ(counts, testing::CountsOf(result));
  const bool isWhole = counts.unplaced == 0;
  counts.unplaced = 0;
  EXPECT_EQ(result.status, !isWhole                      ? PlacementStatus::Incomplete
                           : counts == testing::Counts() ? PlacementStatus::Complete
                                                         : PlacementStatus::Degraded);
}

bool SameLabels(const PlacedLabel& a, const PlacedLabel& b) {
  return a.placed == b.placed && a.box == b.box && a.leaders == b.leaders;
}

/// Each leader starts at its anchor, has one bend at most and ends on the edge of its label.
void ExpectWholeLeaders(const LabelRequest& request, const PlacedLabel& label) {
  ASSERT_EQ(label.leaders.size(), request.anchors.size());
  for (std::size_t k = 0; k < label.leaders.size(); ++k) {
    const auto& leader = label.leaders[k];
    ASSERT_GE(leader.size(), 2U);
    EXPECT_LE(leader.size(), 3U);
    EXPECT_EQ(leader.front(), request.anchors[k]);
    const Point end = leader.back();
    const Box& box = label.box;
    const bool inside = box.left <= end.x && end.x <= box.right && box.top <= end.y && end.y <= box.bottom;
    const bool onEdge = end.x == box.left || end.x == box.right || end.y == box.top || end.y == box.bottom;
    EXPECT_TRUE(inside && onEdge);
  }
}

TEST(Placement, RoomyRequestsBreakNoRule) {
  const RequestShape shapes[] = {
      {.name = "one label", .labels = 1},
      {.name = "balloons", .labels = 50},
      {.name = "two rings", .labels = 130},
      {.name = "mixed sizes", .labels = 40, .mixedSizes = true},
      {.name = "stacks", .labels = 90, .pageWidth = 1920, .pageHeight = 1200, .mixedSizes = true}};
  for (unsigned run = 0; run < 12 * std::size(shapes); ++run) {
    const RequestShape& shape = shapes[run / 12];
    const PlacementRequest request = RandomRequest(shape, 1 + run % 12);
    SCOPED_TRACE(shape.name + ", seed " + std::to_string(1 + run % 12));
    const PlacementResult result = PlaceLabels(request);
    EXPECT_EQ(result.status, PlacementStatus::Complete);
    ExpectHonestCounts(request, result);
    for (std::size_t i = 0; i < request.labels.size(); ++i) {
      ExpectWholeLeaders(request.labels[i], result.labels[i]);
      const Box& box = result.labels[i].box;
      EXPECT_EQ(box.right - box.left, request.labels[i].width);
      EXPECT_EQ(box.bottom - box.top, request.labels[i].height);
    }
  }
}

TEST(Placement, CountsHonestlyAndStaysTheSameInAnyOrder) {
  const RequestShape shapes[] = {
      {.name = "balloons", .labels = 60, .obstacles = 12},
      {.name = "several leaders", .labels = 40, .mostAnchors = 3},
      {.name = "mixed, several leaders", .labels = 25, .mixedSizes = true, .mostAnchors = 3},
      {.name = "model fills page", .labels = 80, .fill = 0.98},
      {.name = "mixed on full page", .labels = 30, .fill = 0.95, .mixedSizes = true},
      {.name = "too many", .labels = 60, .pageWidth = 300, .pageHeight = 200, .mostAnchors = 2, .obstacles = 3}};
  for (unsigned run = 0; run < 6 * std::size(shapes); ++run) {
    const unsigned seed = 1 + run % 6;
    const PlacementRequest request = RandomRequest(shapes[run / 6], seed);
    SCOPED_TRACE(shapes[run / 6].name + ", seed " + std::to_string(seed));
    const PlacementResult result = PlaceLabels(request);
    ExpectHonestCounts(request, result);
    std::vector<std::size_t> order(request.labels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::shuffle(order.begin(), order.end(), std::mt19937(seed));
    PlacementRequest shuffled = request;
    for (std::size_t k = 0; k < order.size(); ++k) shuffled.labels[k] = request.labels[order[k]];
    std::reverse(shuffled.obstacles.begin(), shuffled.obstacles.end());
    const PlacementResult again = PlaceLabels(shuffled);
    for (std::size_t k = 0; k < order.size(); ++k)
      EXPECT_TRUE(SameLabels(again.labels[k], result.labels[order[k]])) << "label " << order[k];
  }
}

TEST(Placement, CoversTheModelWhereThePageHasNoRoom) {
  const PlacementResult full = PlaceLabels(RandomRequest({.name = "", .labels = 50, .fill = 0.98}, 1));
  EXPECT_EQ(full.status, PlacementStatus::Degraded);
  EXPECT_EQ(full.labelsOverModel, 50);
  EXPECT_EQ(full.leaderCrossings + full.labelOverlaps + full.labelsOutsidePage + full.unplaced, 0);
}

TEST(Placement, LeadersAreStraightAndPerpendicularWhenNothingIsInTheWay) {
  PlacementRequest request{{0, 0, 1000, 800}, {300, 200, 700, 600}, {}, {}, {}};
  request.labels = {{"1", 24, 24, {{500, 210}}}, {"2", 24, 24, {{690, 400}}}, {"3", 24, 24, {{320, 300}}}};
  const PlacementResult result = PlaceLabels(request);
  EXPECT_EQ(result.labels[0].leaders[0], (std::vector<Point>{{500, 210}, {500, 180}}));
  EXPECT_EQ(result.labels[1].leaders[0], (std::vector<Point>{{690, 400}, {720, 400}}));
  EXPECT_EQ(result.labels[2].leaders[0], (std::vector<Point>{{320, 300}, {280, 300}}));
}

TEST(Placement, EqualAnchorsAreServedInNaturalOrderOfTheirIds) {
  PlacementRequest request{{0, 0, 1000, 800}, {300, 200, 700, 600}, {}, {}, {}};
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
  struct OddRequest {
    const char* name;
    PlacementRequest request;
    PlacementStatus status = Complete;
    int unplaced = 0;
  };
  const Box page{0, 0, 800, 600}, model{250, 200, 550, 400};
  const LabelRequest good{"b", 30, 20, {{300, 300}}}, inf{"c", 30, 20, {{kInf, kInf}, {400, 300}}};
  const OddRequest requests[] = {
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
  for (const OddRequest& odd : requests) {
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
