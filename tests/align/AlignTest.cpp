// Labels of 3D callouts lined up and spread out on screen, and those of 2D callouts in the same places on a sheet.
#include <zrannotations/LabelMeasure.h>
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
using zrtest::kThree;
using zrtest::Points;
using AlignTest = zrtest::AlignFixture;

// Runs along (4, -3) on screen and leads away from the viewer.
const std::vector<dg::DPoint3D> kLine{{1, 1, 1}, {1, 2.5, 1.8}};

TEST_F(AlignTest, EachModePlacesTheLabelsUndoablyOnScreenAsOnASheet) {
  const struct {
    Align_Mode mode;
    Points plain, distributed;
  } cases[] = {
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
  for (const auto& tested : cases) {
    for (const bool distribute : {false, true}) {
      SCOPED_TRACE(::testing::Message() << "mode " << tested.mode << (distribute ? " distributed" : ""));
      const Points& expected = distribute ? tested.distributed : tested.plain;
      Place(kThree);
      for (int i = 0; i < 2; ++i) {  // where they stay the second time
        EXPECT_TRUE(Run(tested.mode, distribute, kLine));
        ExpectPoints(Pixels(), expected);
      }
      Place(kThree);
      EXPECT_TRUE(Run(tested.mode, distribute, kLine, NewOperation()));
      ASSERT_EQ(UndoHistory::GetLast(scene_)->GetStepCount(), 3u);
      ASSERT_TRUE(UndoHistory::Undo(scene_));
      ExpectPoints(Pixels(), kThree);
      ASSERT_TRUE(UndoHistory::Redo(scene_));
      ExpectPoints(Pixels(), expected);
      if (tested.mode == SpreadX || tested.mode == SpreadY) continue;  // which is another thing on a sheet
      PlaceOnSheet(kThree);
      EXPECT_TRUE(RunOnSheet(tested.mode, distribute, {{1, 1}, {5, -2}}));
      ExpectPoints(Positions(), expected);
    }
  }
}

TEST_F(AlignTest, OtherAnnotationsAreSkippedButCount) {
  const auto stranger = zrk::MakeObject<zrannotations::SymbolAnnotation>(part_.design);
  const double third = 40.0 / 3;
  const struct {
    Align_Mode mode;
    bool strangerFirst;
    Points expected;
  } cases[] = {
      {MinY, false, {{10, 0}, {10 + 2 * third, 0}, {10 + third, 0}}},
      {AlongAxisX, false, {{25.2 + 4.4, 18.6 + 17.6 / 3}, {25.2, 18.6}, {25.2 + 8.8, 18.6 + 35.2 / 3}}},
      // Without a first label ranges begin at 0, and a line has no direction.
      {MinX, true, {{0, 100.0 / 6}, {0, 0}, {0, 100.0 / 3}}},
      {AlongAxisX, true, {{10, 100.0 / 6}, {50, 0}, {20, 100.0 / 3}}},
      {AlongLine, true, {{10, 100.0 / 6}, {50, 0}, {20, 100.0 / 3}}},
  };
  for (const auto& tested : cases) {
    SCOPED_TRACE(::testing::Message() << "mode " << tested.mode << (tested.strangerFirst ? " first" : " last"));
    Place(kThree);
    annotations_.insert(tested.strangerFirst ? annotations_.begin() : annotations_.end(), stranger);
    EXPECT_TRUE(Run(tested.mode, true));
    ExpectPoints(Pixels(), tested.expected);
  }
}

TEST_F(AlignTest, SpreadingTakesAnyNumberOfLabelsAndSortsTheList) {
  for (const Align_Mode mode : {SpreadX, SpreadY}) {
    for (const Points& labels : {Points{}, Points{{3, 4}}}) {
      Place(labels);
      EXPECT_TRUE(Run(mode, true));
      ExpectPoints(Pixels(), labels);
    }
  }
  Place({{100, 0}, {0, 1}, {10, 2}});
  EXPECT_TRUE(Run(SpreadX, false));
  ExpectPoints(Pixels(), {{100, 0}, {0, 1}, {30, 2}});
  EXPECT_EQ(annotations_, (Align::Annotations{labels_[1], labels_[2], labels_[0]}));
}

TEST_F(AlignTest, NothingHappensWithoutWhatTheModeNeeds) {
  SetCamera(CameraOf({3, 4, 0}, {0, -2, 0}, {1e-9, 0, 1}, {7, 9, 11}));
  const struct {
    const char* what;
    Align_Mode mode;
    std::size_t labels = 3, points = 0;
    bool withView = true;
  } cases[] = {{"no label", MinX, 0},
               {"one label", MinX, 1},
               {"no view", MinX, 3, 0, false},
               {"axis to the viewer", AlongAxisZ},
               {"no points", AlongLine},
               {"one point", AlongLine, 3, 1},
               {"three points", AlongLine, 3, 3}};
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.what);
    Points labels = kThree;
    labels.resize(tested.labels);
    Place(labels);
    const auto operation = NewOperation();
    const du::SmartPtr<Align> align(
        new Align(annotations_, tested.mode, true, tested.withView ? view_ : nullptr, operation));
    EXPECT_FALSE(align->Execute(std::vector<dg::DPoint3D>(tested.points, dg::DPoint3D(1, 2, 3))));
    ExpectPoints(Pixels(), labels);
    EXPECT_EQ(operation->GetStepCount(), 0u);
    EXPECT_EQ(UndoHistory::GetCount(scene_), 0u);
  }
  EXPECT_TRUE(Align::IsAxisAvailable(view_, AlongAxisX));
  EXPECT_FALSE(Align::IsAxisAvailable(view_, AlongAxisZ));
  EXPECT_FALSE(Align::IsAxisAvailable({}, AlongAxisX));
}

// Tolerances: 0.005 to level, 0.005 * pi / 2 = 0.0078540 to upright.
TEST_F(AlignTest, NearlyLevelAndUprightLinesCentre) {
  enum class Runs { Level, Upright, Slanted };
  const struct {
    double angle;
    Runs runs;
  } cases[] = {{0.001, Runs::Level},
               {0.00499, Runs::Level},
               {-0.00499, Runs::Level},
               {0.00501, Runs::Slanted},
               {-0.00501, Runs::Slanted},
               {1.5708 - 0.00784, Runs::Upright},
               {1.5708 + 0.00784, Runs::Upright},
               {1.5708 - 0.00787, Runs::Slanted},
               {1.5708 + 0.00787, Runs::Slanted}};
  for (const auto& [angle, runs] : cases) {
    SCOPED_TRACE(angle);
    const double c = std::cos(angle), s = std::sin(angle);
    SetCamera(CameraOf({c, s, 0}, {-s, c, 0}, {0, 0, 1}, {}));
    for (const Align_Mode mode : {AlongAxisX, AlongLine}) {
      Place({{0, 0}, {100, 100}});
      EXPECT_TRUE(Run(mode, false, {{0, 0, 0}, {1, 0, 0}}));
      const dg::DVec2 way = Pixels()[1] - Pixels()[0];
      EXPECT_EQ(std::abs(way.y) < 1e-6, runs == Runs::Level);
      EXPECT_EQ(std::abs(way.x) < 1e-6, runs == Runs::Upright);
      EXPECT_TRUE(runs != Runs::Slanted || std::abs(way.y * c - way.x * s) < 1e-6);
    }
  }
}

TEST_F(AlignTest, ASlantedLineEndsWhereLabelsWouldLeaveThePage) {
  // A label of 20 x 10 with 10 pixels around it at scale 2 keeps the line 20 and 15 pixels inside the page.
  const struct {
    const char* what;
    dg::DBox2D page;
    Points labels, expected;
  } cases[] = {
      {"both ends", {{0, 0}, {200, 100}}, {{5, 5}, {195, 95}, {90, 60}}, {{73.75, 15}, {126.25, 85}, {101.2, 51.6}}},
      {"a label outside", {{0, 0}, {200, 94}}, {{5, 5}, {195, 95}}, {{44.2, -24.4}, {155.8, 124.4}}},
      {"a narrow page far out", {{100, 0}, {130, 100}}, {{101, 1}, {129, 99}}, {{86.44, 11.92}, {143.56, 88.08}}},
      {"no page", dg::DBox2D::EMPTY, {{5, 5}, {195, 95}}, {{44.2, -24.4}, {155.8, 124.4}}},
  };
  zrannotations::LabelMeasure::Set([](const auto&) { return dg::DVec2(20, 10); });
  du::DynamicCast<zrk::illustration::Illustration3dView>(view_)->SetPageShown(true);
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.what);
    const auto preview = zrk::MakeObject<zrk::illustration::Illu3dPagePreview>();
    preview->SetPage(tested.page, 2.0);
    view_->SetPrintPreview(preview);
    Place(tested.labels);
    EXPECT_TRUE(Run(AlongAxisX, false));
    ExpectPoints(Pixels(), tested.expected);
  }
  zrannotations::LabelMeasure::Set({});
}

TEST_F(AlignTest, ALabelFreeInModelSpaceMovesByItsStepAlone) {
  Place({{10, 0}, {50, 5}});
  labels_[0]->SetLabelPlacementState(1);
  const double before = labels_[0]->GetPosition().x;
  EXPECT_TRUE(Run(MaxX, false));
  EXPECT_EQ(labels_[0]->GetPosition().x, before);
  EXPECT_TRUE(Run(MaxX, false, {}, NewOperation()));
  ExpectPoints(Pixels(), {{50, 0}, {50, 5}});
  ASSERT_TRUE(UndoHistory::Undo(scene_));
  EXPECT_NEAR(labels_[0]->GetPosition().x, before, 1e-9);
}

TEST_F(AlignTest, AScreenRelativeLabelStaysRelative) {
  view_->SetWindowSize(200, 100);
  Place({{10, 20}, {50, 5}});
  const auto label = labels_[0];
  label->SetLabelScreenSpaceMode(view_);
  label->SetRelativeScreenPosition({0.1, 0.4});  // pixel (20, 40), away from where the model position is seen
  const auto stored = label->GetPosition();
  const auto depth = label->GetLabelRelativeScreenPosition(view_).z;
  const auto relative = [&] {
    return Points{{label->GetRelativeScreenPosition().x, label->GetRelativeScreenPosition().y}};
  };
  EXPECT_TRUE(Run(MaxX, false, {}, NewOperation()));
  EXPECT_TRUE(label->IsLabelRelativeToScreen());
  EXPECT_FALSE(labels_[1]->IsLabelRelativeToScreen());
  ExpectPoints(relative(), {{0.25, 0.4}});
  ExpectPoints(Pixels(), {{50, 40}, {50, 5}});
  ASSERT_TRUE(UndoHistory::Undo(scene_));
  ExpectPoints(relative(), {{0.1, 0.4}});
  EXPECT_EQ(label->GetPosition().x, stored.x);
  EXPECT_EQ(label->GetPosition().y, stored.y);
  EXPECT_EQ(label->GetLabelRelativeScreenPosition(view_).z, depth);
  ASSERT_TRUE(UndoHistory::Redo(scene_));
  ExpectPoints(relative(), {{0.25, 0.4}});
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
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(align->Execute({}));
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
  const struct {
    const char* what;
    dg::DPoint2D point;
    dg::DVec2 direction;
    dg::DBox2D box;
    Points expected;
  } cases[] = {{"left and right", {5, 10}, {1, 1}, box, {{0, 5}, {10, 15}}},
               {"left and bottom", {1, 1}, {1, -1}, box, {{0, 2}, {2, 0}}},
               {"right and top", {9, 19}, {-1, 1}, box, {{10, 18}, {8, 20}}},
               {"bottom and top", {5, 10}, {1, 4}, box, {{2.5, 0}, {7.5, 20}}},
               {"diagonal", {5, 10}, {1, 2}, box, {{0, 0}, {10, 20}}},
               {"one corner, twice", {0, 0}, {1, -1}, box, {{0, 0}, {0, 0}}},
               {"beside", {-5, 0}, {1, -1}, box, {}},
               {"level", {5, 10}, {1, 0}, box, {}},
               {"upright", {5, 10}, {0, 1}, box, {}},
               {"empty box", {5, 10}, {1, 1}, dg::DBox2D::EMPTY, {}}};
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.what);
    std::array<dg::DPoint2D, 2> ends;
    const bool crosses = Align::FindIntersectionPoints(tested.point, tested.direction, tested.box, ends);
    ExpectPoints(crosses ? Points(ends.begin(), ends.end()) : Points(), tested.expected);
  }
}

}  // namespace
