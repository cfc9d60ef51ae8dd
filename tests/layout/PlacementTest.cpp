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
  const testing::BruteCounts counts = testing::CountByBruteForce(request, result);
  EXPECT_EQ(counts.crossings, result.leaderCrossings);
  EXPECT_EQ(counts.overlaps, result.labelOverlaps);
  EXPECT_EQ(counts.throughLabels, result.leadersThroughLabels);
  EXPECT_EQ(counts.overModel, result.labelsOverModel);
  EXPECT_EQ(counts.outsidePage, result.labelsOutsidePage);
  EXPECT_EQ(counts.overObstacle, result.labelsOverObstacle);
  EXPECT_EQ(counts.throughObstacles, result.leadersThroughObstacles);
  EXPECT_EQ(counts.unplaced, result.unplaced);
  const int broken = counts.crossings + counts.overlaps + counts.throughLabels + counts.overModel + counts.outsidePage +
                     counts.overObstacle + counts.throughObstacles;
  EXPECT_EQ(result.status, counts.unplaced > 0 ? PlacementStatus::Incomplete
                           : broken > 0        ? PlacementStatus::Degraded
                                               : PlacementStatus::Complete);
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

class PlacementShapes : public ::testing::TestWithParam<RequestShape> {};

using RoomyRequests = PlacementShapes;
using AllRequests = PlacementShapes;

std::string ShapeName(const ::testing::TestParamInfo<RequestShape>& info) {
  return info.param.name;
}

TEST_P(RoomyRequests, BreakNoRule) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    const PlacementRequest request = RandomRequest(GetParam(), seed);
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

INSTANTIATE_TEST_SUITE_P(Placement, RoomyRequests,
                         ::testing::Values(RequestShape{.name = "OneLabel", .labels = 1},
                                           RequestShape{.name = "Balloons", .labels = 50},
                                           RequestShape{.name = "TwoRings", .labels = 130},
                                           RequestShape{.name = "MixedSizes", .labels = 40, .mixedSizes = true},
                                           RequestShape{.name = "StacksOfMixedSizes",
                                                        .labels = 90,
                                                        .pageWidth = 1920,
                                                        .pageHeight = 1200,
                                                        .mixedSizes = true}),
                         ShapeName);

TEST_P(AllRequests, CountHonestlyAndStayTheSameInAnyOrder) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE(seed);
    const PlacementRequest request = RandomRequest(GetParam(), seed);
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

INSTANTIATE_TEST_SUITE_P(
    Placement, AllRequests,
    ::testing::Values(
        RequestShape{.name = "Balloons", .labels = 60, .obstacles = 12},
        RequestShape{.name = "SeveralLeaders", .labels = 40, .mostAnchors = 3},
        RequestShape{.name = "MixedSeveralLeaders", .labels = 25, .mixedSizes = true, .mostAnchors = 3},
        RequestShape{.name = "ModelFillsPage", .labels = 80, .fill = 0.98},
        RequestShape{.name = "MixedOnFullPage", .labels = 30, .fill = 0.95, .mixedSizes = true},
        RequestShape{
            .name = "FarTooMany", .labels = 60, .pageWidth = 300, .pageHeight = 200, .mostAnchors = 2, .obstacles = 3}),
    ShapeName);

TEST(Placement, StaysOffTheModelWhileThePageHasRoomAndCoversItOtherwise) {
  const PlacementResult roomy = PlaceLabels(RandomRequest({.name = "", .labels = 100}, 1));
  EXPECT_EQ(roomy.labelsOverModel, 0);
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

struct OddRequest {
  std::string name;
  PlacementRequest request;
  PlacementStatus status;
  int unplaced = 0;
};

void PrintTo(const OddRequest& odd, std::ostream* out) {
  *out << odd.name;
}

class OddRequests : public ::testing::TestWithParam<OddRequest> {};

TEST_P(OddRequests, GetAStatusAndCountsInsteadOfFailing) {
  const PlacementResult result = PlaceLabels(GetParam().request);
  EXPECT_EQ(result.labels.size(), GetParam().request.labels.size());
  EXPECT_EQ(result.status, GetParam().status);
  EXPECT_EQ(result.unplaced, GetParam().unplaced);
  for (const PlacedLabel& label : result.labels)
    for (const auto& leader : label.leaders)
      for (const Point& point : leader) EXPECT_TRUE(std::isfinite(point.x) && std::isfinite(point.y));
}

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
const Box kPage{0, 0, 800, 600}, kModel{250, 200, 550, 400};

std::vector<LabelRequest> Repeat(int count, const LabelRequest& label) {
  return std::vector<LabelRequest>(static_cast<std::size_t>(count), label);
}

INSTANTIATE_TEST_SUITE_P(
    Placement, OddRequests,
    ::testing::Values(
        OddRequest{"NoLabels", {kPage, kModel, {}, {}, {}}, PlacementStatus::Complete},
        OddRequest{"NoAnchors", {kPage, kModel, {}, Repeat(5, {"a", 30, 20, {}}), {}}, PlacementStatus::Complete},
        OddRequest{"OneSharedAnchor",
                   {kPage, kModel, {}, Repeat(40, {"a", 30, 20, {{400, 300}}}), {}},
                   PlacementStatus::Complete},
        OddRequest{"AnchorsOnOneLine",
                   {kPage,
                    kModel,
                    {},
                    {{"a", 30, 20, {{300, 300}}}, {"b", 30, 20, {{400, 300}}}, {"c", 30, 20, {{500, 300}}}},
                    {}},
                   PlacementStatus::Complete},
        OddRequest{"NoSize", {kPage, kModel, {}, Repeat(3, {"a", 0, 0, {{400, 300}}}), {}}, PlacementStatus::Complete},
        OddRequest{"SizesThatAreNone",
                   {kPage, kModel, {}, {{"a", kNan, -5, {{400, 300}}}, {"b", kInf, 20, {{300, 300}}}}, {}},
                   PlacementStatus::Complete},
        OddRequest{"AnchorsThatAreNone",
                   {kPage, kModel, {}, {{"a", 30, 20, {{kNan, 1}}}, {"b", 30, 20, {{kInf, kInf}, {400, 300}}}}, {}},
                   PlacementStatus::Complete},
        OddRequest{
            "AnchorOffThePage", {kPage, kModel, {}, {{"a", 30, 20, {{-900, 5000}}}}, {}}, PlacementStatus::Complete},
        OddRequest{"LabelLargerThanPage",
                   {kPage, kModel, {}, {{"a", 900, 20, {{400, 300}}}, {"b", 30, 20, {{400, 300}}}}, {}},
                   PlacementStatus::Incomplete,
                   1},
        OddRequest{
            "NoPage", {{}, kModel, {}, Repeat(2, {"a", 30, 20, {{400, 300}}}), {}}, PlacementStatus::Incomplete, 2},
        OddRequest{"PageThatIsNone",
                   {{kNan, 0, kInf, -kInf}, kModel, {}, Repeat(2, {"a", 30, 20, {{400, 300}}}), {}},
                   PlacementStatus::Complete},
        OddRequest{"EverythingBlocked",
                   {kPage, kModel, {{-10, -10, 900, 700}}, Repeat(2, {"a", 30, 20, {{400, 300}}}), {}},
                   PlacementStatus::Incomplete,
                   2},
        OddRequest{"ModelOfNoSize",
                   {kPage, {400, 300, 400, 300}, {}, Repeat(9, {"a", 30, 20, {{400, 300}}}), {}},
                   PlacementStatus::Complete},
        OddRequest{
            "ModelLargerThanPage",
            {kPage, {-500, -500, 2000, 2000}, {}, {{"a", 30, 20, {{400, 300}}}, {"b", 30, 20, {{300, 200}}}}, {}},
            PlacementStatus::Degraded},
        OddRequest{"OptionsThatAreNone",
                   {kPage, kModel, {}, Repeat(3, {"a", 30, 20, {{400, 300}}}), {kNan, -4, 0}},
                   PlacementStatus::Complete}),
    [](const ::testing::TestParamInfo<OddRequest>& param) { return param.param.name; });

}  // namespace

}  // namespace zrcallouts::placement
