// Labels of 3D callouts lined up and spread out on screen.
#include <algorithm>
#include <random>

#include <zrannotations/LabelMeasure.h>
#include <zrannotations/MoveOperationStep.h>
#include <zrcontext/Context2D.h>
#include <zrk/MemoryPool.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/Illu3dPagePreview.h>
#include <zrk/illustration/Illustration3dView.h>

#include "align/AlignFixture.h"

namespace {

using namespace zrcallouts;
using zrk::UndoHistory;
using zrtest::CameraOf;
using zrtest::ExpectPoints;
using zrtest::Points;

struct AlignTest : zrtest::AlignFixture {
  ~AlignTest() override { zrannotations::LabelMeasure::Set({}); }
  void ShowPage(const dg::DBox2D& page, double scale) {
    const auto preview = zrk::MakeObject<zrk::illustration::Illu3dPagePreview>();
    preview->SetPage(page, scale);
    view_->SetPrintPreview(preview);
    du::DynamicCast<zrk::illustration::Illustration3dView>(view_)->SetPageShown(true);
    zrannotations::LabelMeasure::Set([](const auto&) { return dg::DVec2(20, 10); });
  }
  [[nodiscard]] std::vector<dg::DPoint3D> OwnPositions() const {
    std::vector<dg::DPoint3D> positions;
    for (const auto& label : labels_) positions.push_back(label->GetPosition());
    return positions;
  }
};

void ExpectSamePositions(const std::vector<dg::DPoint3D>& actual, const std::vector<dg::DPoint3D>& expected,
                         double tolerance) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(actual[i][k], expected[i][k], tolerance) << "label " << i;
  }
}

const Points kThree{{10, 40}, {50, 0}, {20, 50}};
// Runs along (4, -3) on screen and leads away from the viewer.
const std::vector<dg::DPoint3D> kLine{{1, 1, 1}, {1, 2.5, 1.8}};

TEST_F(AlignTest, EachModePlacesTheLabelsAsOnScreen) {
  struct Case {
    Align_Mode mode;
    Points plain;
    Points distributed;
  };
  const Case cases[] = {
      {MinX, {{10, 40}, {10, 0}, {10, 50}}, {{10, 25}, {10, 0}, {10, 50}}},
      {CenterX, {{30, 40}, {30, 0}, {30, 50}}, {{30, 25}, {30, 0}, {30, 50}}},
      {MaxX, {{50, 40}, {50, 0}, {50, 50}}, {{50, 25}, {50, 0}, {50, 50}}},
      {MinY, {{10, 0}, {50, 0}, {20, 0}}, {{10, 0}, {50, 0}, {30, 0}}},
      {MaxY, {{10, 50}, {50, 50}, {20, 50}}, {{10, 50}, {50, 50}, {30, 50}}},
      {CenterY, {{10, 25}, {50, 25}, {20, 25}}, {{10, 25}, {50, 25}, {30, 25}}},
      {SpreadX, {{10, 40}, {70, 0}, {40, 50}}, {{10, 25}, {70, 0}, {40, 50}}},
      {SpreadY, {{10, 40}, {50, 0}, {20, 70}}, {{10, 40}, {50, 0}, {30, 70}}},
      {AlongAxisX, {{30, 25}, {25.2, 18.6}, {38.4, 36.2}}, {{31.8, 27.4}, {25.2, 18.6}, {38.4, 36.2}}},
      {AlongAxisY, {{30, 40}, {30, 0}, {30, 50}}, {{30, 25}, {30, 0}, {30, 50}}},
      {AlongAxisZ, {{10, 25}, {50, 25}, {20, 25}}, {{10, 25}, {50, 25}, {30, 25}}},
      {AlongLine, {{10, 40}, {54.8, 6.4}, {11.6, 38.8}}, {{10, 40}, {54.8, 6.4}, {32.4, 23.2}}},
  };
  for (const Case& example : cases) {
    for (const bool distribute : {false, true}) {
      SCOPED_TRACE(::testing::Message() << "mode " << example.mode << (distribute ? " distributed" : ""));
      Place(kThree);
      EXPECT_TRUE(Run(example.mode, distribute, kLine));
      ExpectPoints(Pixels(), distribute ? example.distributed : example.plain);
    }
  }
}

TEST_F(AlignTest, OtherAnnotationsAreSkippedButCount) {
  const auto stranger = zrk::MakeObject<zrannotations::SymbolAnnotation>(part_.design);
  const double third = 40.0 / 3;
  struct Case {
    Align_Mode mode;
    bool strangerFirst;
    Points expected;
  };
  const Case cases[] = {
      {MinY, false, {{10, 0}, {10 + 2 * third, 0}, {10 + third, 0}}},
      {AlongAxisX, false, {{25.2 + 4.4, 18.6 + 17.6 / 3}, {25.2, 18.6}, {25.2 + 8.8, 18.6 + 35.2 / 3}}},
      // Without a first label ranges begin at 0, and a line has no direction.
      {MinX, true, {{0, 100.0 / 6}, {0, 0}, {0, 100.0 / 3}}},
      {AlongAxisX, true, {{10, 100.0 / 6}, {50, 0}, {20, 100.0 / 3}}},
      {AlongLine, true, {{10, 100.0 / 6}, {50, 0}, {20, 100.0 / 3}}},
  };
  for (const Case& example : cases) {
    SCOPED_TRACE(::testing::Message() << "mode " << example.mode << (example.strangerFirst ? " first" : " last"));
    Place(kThree);
    annotations_.insert(example.strangerFirst ? annotations_.begin() : annotations_.end(), stranger);
    EXPECT_TRUE(Run(example.mode, true));
    ExpectPoints(Pixels(), example.expected);
  }
}

TEST_F(AlignTest, SpreadingTakesAnyNumberOfLabelsAndSortsTheList) {
  for (const Align_Mode mode : {SpreadX, SpreadY}) {
    Place({});
    EXPECT_TRUE(Run(mode, true));
    Place({{3, 4}});
    EXPECT_TRUE(Run(mode, true));
    ExpectPoints(Pixels(), {{3, 4}});
  }
  Place({{100, 0}, {0, 1}, {10, 2}});
  EXPECT_TRUE(Run(SpreadX, false));
  ExpectPoints(Pixels(), {{100, 0}, {0, 1}, {30, 2}});
  EXPECT_EQ(annotations_, (Align::Annotations{labels_[1], labels_[2], labels_[0]}));
}

TEST_F(AlignTest, NothingHappensWithoutWhatTheModeNeeds) {
  SetCamera(CameraOf({3, 4, 0}, {0, -2, 0}, {1e-9, 0, 1}, {7, 9, 11}));
  struct Case {
    const char* what;
    Align_Mode mode;
    std::size_t labels;
    std::size_t points;
    bool withView;
  };
  const Case cases[] = {{"no label", MinX, 0, 0, true},         {"one label", MinX, 1, 0, true},
                        {"no view", MinX, 3, 0, false},         {"axis to the viewer", AlongAxisZ, 3, 0, true},
                        {"no points", AlongLine, 3, 0, true},   {"one point", AlongLine, 3, 1, true},
                        {"three points", AlongLine, 3, 3, true}};
  for (const Case& example : cases) {
    SCOPED_TRACE(example.what);
    Place(Points(kThree.begin(), kThree.begin() + static_cast<std::ptrdiff_t>(example.labels)));
    const auto before = OwnPositions();
    const auto operation = NewOperation();
    const du::SmartPtr<Align> align(new Align(annotations_, example.mode, true,
                                              example.withView ? view_ : du::SmartPtr<zrk::ShapeView>(), operation));
    EXPECT_FALSE(align->Execute(std::vector<dg::DPoint3D>(example.points, dg::DPoint3D(1, 2, 3))));
    ExpectSamePositions(OwnPositions(), before, 0);
    EXPECT_EQ(operation->GetStepCount(), 0u);
    EXPECT_EQ(UndoHistory::GetCount(scene_), 0u);
  }
  EXPECT_TRUE(Align::IsAxisAvailable(view_, AlongAxisX));
  EXPECT_FALSE(Align::IsAxisAvailable(view_, AlongAxisZ));
  EXPECT_FALSE(Align::IsAxisAvailable({}, AlongAxisX));
}

enum class Runs { Level, Upright, Slanted };

class SlopeTest : public AlignTest, public ::testing::WithParamInterface<std::pair<double, Runs>> {};

// Tolerances: 0.005 to level, 0.005 * pi / 2 = 0.0078540 to upright.
INSTANTIATE_TEST_SUITE_P(
    Thresholds, SlopeTest,
    ::testing::Values(std::pair(0.001, Runs::Level), std::pair(0.00499, Runs::Level), std::pair(-0.00499, Runs::Level),
                      std::pair(0.00501, Runs::Slanted), std::pair(-0.00501, Runs::Slanted),
                      std::pair(1.5708 - 0.00784, Runs::Upright), std::pair(1.5708 + 0.00784, Runs::Upright),
                      std::pair(1.5708 - 0.00787, Runs::Slanted), std::pair(1.5708 + 0.00787, Runs::Slanted)));

TEST_P(SlopeTest, NearlyLevelAndUprightLinesCentre) {
  const auto [angle, runs] = GetParam();
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  SetCamera(CameraOf({c, s, 0}, {-s, c, 0}, {0, 0, 1}, {}));
  for (const Align_Mode mode : {AlongAxisX, AlongLine}) {
    Place({{0, 0}, {100, 100}});
    EXPECT_TRUE(Run(mode, false, {{0, 0, 0}, {1, 0, 0}}));
    const Points pixels = Pixels();
    EXPECT_EQ(std::abs(pixels[0].y - pixels[1].y) < 1e-6, runs == Runs::Level);
    EXPECT_EQ(std::abs(pixels[0].x - pixels[1].x) < 1e-6, runs == Runs::Upright);
    if (runs != Runs::Slanted) continue;
    EXPECT_NEAR((pixels[1].y - pixels[0].y) * c, (pixels[1].x - pixels[0].x) * s, 1e-6);
  }
}

TEST_F(AlignTest, ASlantedLineEndsWhereLabelsWouldLeaveThePage) {
  struct Case {
    const char* what;
    dg::DBox2D page;
    Points labels;
    Points expected;
  };
  // A label of 20 x 10 with 10 pixels around it at scale 2 keeps the line 20 and 15 pixels inside the page.
  const Case cases[] = {
      {"both ends", {{0, 0}, {200, 100}}, {{5, 5}, {195, 95}, {90, 60}}, {{73.75, 15}, {126.25, 85}, {101.2, 51.6}}},
      {"a label outside", {{0, 0}, {200, 94}}, {{5, 5}, {195, 95}}, {{44.2, -24.4}, {155.8, 124.4}}},
      {"a narrow page far out", {{100, 0}, {130, 100}}, {{101, 1}, {129, 99}}, {{86.44, 11.92}, {143.56, 88.08}}},
      {"no page", dg::DBox2D::EMPTY, {{5, 5}, {195, 95}}, {{44.2, -24.4}, {155.8, 124.4}}},
  };
  for (const Case& example : cases) {
    SCOPED_TRACE(example.what);
    ShowPage(example.page, 2.0);
    Place(example.labels);
    EXPECT_TRUE(Run(AlongAxisX, false));
    ExpectPoints(Pixels(), example.expected);
  }
}

TEST_F(AlignTest, UndoAndRedoRestoreEveryLabel) {
  for (int mode = MinX; mode <= AlongLine; ++mode) {
    SCOPED_TRACE(mode);
    Place(kThree);
    labels_[2]->SetLabelPlacementState(1);
    const auto before = OwnPositions();
    EXPECT_TRUE(Run(static_cast<Align_Mode>(mode), true, kLine, NewOperation()));
    const auto after = OwnPositions();
    ASSERT_EQ(UndoHistory::GetLast(scene_)->GetStepCount(), 3u);
    ASSERT_TRUE(UndoHistory::Undo(scene_));
    ExpectSamePositions(OwnPositions(), before, 1e-9);
    ASSERT_TRUE(UndoHistory::Redo(scene_));
    ExpectSamePositions(OwnPositions(), after, 1e-9);
  }
}

TEST_F(AlignTest, ALabelFreeInModelSpaceMovesByItsStepAlone) {
  Place({{10, 0}, {50, 5}});
  labels_[0]->SetLabelPlacementState(1);
  const auto before = OwnPositions();
  EXPECT_TRUE(Run(MaxX, false));
  EXPECT_EQ(OwnPositions()[0].x, before[0].x);
  EXPECT_TRUE(Run(MaxX, false, {}, NewOperation()));
  ExpectPoints(Pixels(), {{50, 0}, {50, 5}});
}

TEST_F(AlignTest, AScreenRelativeLabelStaysRelative) {
  view_->SetWindowSize(200, 100);
  Place({{10, 20}, {50, 5}});
  labels_[0]->SetLabelScreenSpaceMode(view_);
  labels_[0]->SetRelativeScreenPosition({0.1, 0.4});  // pixel (20, 40), away from where the model position is seen
  const auto stored = labels_[0]->GetPosition();
  const auto depth = labels_[0]->GetLabelRelativeScreenPosition(view_).z;
  EXPECT_TRUE(Run(MaxX, false, {}, NewOperation()));
  EXPECT_NE(labels_[0]->GetPosition().x, stored.x);
  EXPECT_TRUE(labels_[0]->IsLabelRelativeToScreen());
  EXPECT_FALSE(labels_[1]->IsLabelRelativeToScreen());
  const auto expectRelative = [&](double x, double y) {
    EXPECT_NEAR(labels_[0]->GetRelativeScreenPosition().x, x, 1e-9);
    EXPECT_NEAR(labels_[0]->GetRelativeScreenPosition().y, y, 1e-9);
  };
  expectRelative(0.25, 0.4);
  ExpectPoints(Pixels(), {{50, 40}, {50, 5}});
  ASSERT_TRUE(UndoHistory::Undo(scene_));
  expectRelative(0.1, 0.4);
  EXPECT_EQ(labels_[0]->GetPosition().x, stored.x);
  EXPECT_EQ(labels_[0]->GetPosition().y, stored.y);
  EXPECT_EQ(labels_[0]->GetLabelRelativeScreenPosition(view_).z, depth);
  ASSERT_TRUE(UndoHistory::Redo(scene_));
  expectRelative(0.25, 0.4);
}

TEST_F(AlignTest, WithoutMemoryForStepsLabelsStillMove) {
  Place(kThree);
  const auto operation = NewOperation();
  zrk::MemoryPool::FailAfter(1, 1);
  EXPECT_TRUE(Run(MinX, false, {}, operation));
  EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), 1u);
  zrk::MemoryPool::FailNext(0);
  EXPECT_EQ(operation->GetStepCount(), 2u);
  ExpectPoints(Pixels(), {{10, 40}, {10, 0}, {10, 50}});
}

TEST_F(AlignTest, CopiesShareTheLabelsButNotTheMeasuringContext) {
  const int before = zrcontext::Context2D::GetLiveCount();
  Place(kThree);
  du::SmartPtr<Align> align(new Align(annotations_, AlongAxisX, view_));
  EXPECT_TRUE(align->Execute({}));
  EXPECT_TRUE(align->Execute({}));
  EXPECT_EQ(zrcontext::Context2D::GetLiveCount(), before + 1);
  du::SmartPtr<Align> copy(new Align(*align));
  EXPECT_EQ(zrcontext::Context2D::GetLiveCount(), before + 1);
  align.Reset();
  Place(kThree);
  EXPECT_TRUE(copy->Execute({}));
  ExpectPoints(Pixels(), {{30, 25}, {25.2, 18.6}, {38.4, 36.2}});
  copy.Reset();
  EXPECT_EQ(zrcontext::Context2D::GetLiveCount(), before);
}

TEST_F(AlignTest, ALineCrossesABoxInTwoPointsOrNot) {
  const dg::DBox2D box({0, 0}, {10, 20});
  struct Case {
    const char* what;
    dg::DPoint2D point;
    dg::DVec2 direction;
    dg::DBox2D box;
    Points expected;
  };
  const Case cases[] = {{"left and right", {5, 10}, {1, 1}, box, {{0, 5}, {10, 15}}},
                        {"left and bottom", {1, 1}, {1, -1}, box, {{0, 2}, {2, 0}}},
                        {"right and top", {9, 19}, {-1, 1}, box, {{10, 18}, {8, 20}}},
                        {"bottom and top", {5, 10}, {1, 4}, box, {{2.5, 0}, {7.5, 20}}},
                        {"diagonal", {5, 10}, {1, 2}, box, {{0, 0}, {10, 20}}},
                        {"one corner, twice", {0, 0}, {1, -1}, box, {{0, 0}, {0, 0}}},
                        {"beside", {-5, 0}, {1, -1}, box, {}},
                        {"level", {5, 10}, {1, 0}, box, {}},
                        {"upright", {5, 10}, {0, 1}, box, {}},
                        {"empty box", {5, 10}, {1, 1}, dg::DBox2D::EMPTY, {}}};
  for (const Case& example : cases) {
    SCOPED_TRACE(example.what);
    std::array<dg::DPoint2D, 2> ends;
    EXPECT_EQ(Align::FindIntersectionPoints(example.point, example.direction, example.box, ends),
              !example.expected.empty());
    if (!example.expected.empty()) ExpectPoints({ends[0], ends[1]}, example.expected);
  }
}

TEST_F(AlignTest, RandomLabelsKeepWhatEachModePromises) {
  std::mt19937 random(20240607);
  std::uniform_real_distribution<double> anywhere(-500, 500);
  for (int round = 0; round < 240; ++round) {
    const auto mode = static_cast<Align_Mode>(round % 12);
    const bool distribute = round % 24 >= 12;
    SCOPED_TRACE(::testing::Message() << "round " << round);
    Points labels(2 + random() % 9);
    for (auto& label : labels) label = {anywhere(random), anywhere(random)};
    Place(labels);
    ASSERT_TRUE(Run(mode, distribute, kLine));
    const Points once = Pixels();
    ASSERT_TRUE(Run(mode, distribute, kLine));
    ExpectPoints(Pixels(), once);
    // The direction that all labels share, and the one along which they stand.
    const bool level = (mode >= MinY && mode <= CenterY) || mode == SpreadY || mode == AlongAxisZ;
    const dg::DVec2 along = mode == AlongAxisX  ? dg::DVec2(0.6, 0.8)
                            : mode == AlongLine ? dg::DVec2(0.8, -0.6)
                            : level             ? dg::DVec2(1, 0)
                                                : dg::DVec2(0, 1);
    const bool spread = mode == SpreadX || mode == SpreadY;
    std::vector<double> places;
    for (const auto& pixel : once) {
      places.push_back(pixel.x * along.x + pixel.y * along.y);
      const double off = (pixel.x - once[0].x) * along.y - (pixel.y - once[0].y) * along.x;
      EXPECT_TRUE(spread || std::abs(off) < 1e-6) << off;
    }
    std::sort(places.begin(), places.end());
    for (std::size_t i = 2; distribute && i < places.size(); ++i)
      EXPECT_NEAR(places[i] - places[i - 1], places[1] - places[0], 1e-6);
  }
}

}  // namespace
