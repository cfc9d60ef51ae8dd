// Labels of 2D callouts lined up on a sheet.
#include <random>

#include <zrk/UndoHistory.h>
#include <zrk/illustration/TAnnotation.h>

#include "align/AlignFixture.h"

namespace {

using namespace zrcallouts;
using zrk::UndoHistory;
using zrtest::ExpectPoints;
using zrtest::Points;
using Align2DTest = zrtest::SheetFixture;

const Points kThree{{10, 40}, {50, 0}, {20, 50}};
const Points kLine{{1, 1}, {5, -2}};

TEST_F(Align2DTest, TooFewCalloutsOrNoDirectionMoveNothing) {
  struct Case {
    const char* what;
    Align_Mode mode;
    bool distribute;
    std::size_t callouts;
    std::size_t points;
  };
  const Case cases[] = {{"none", SpreadX, false, 0, 0},          {"one", SpreadX, false, 1, 0},
                        {"two to distribute", MinX, true, 2, 0}, {"no axis", AlongAxisZ, false, 3, 0},
                        {"one point", AlongLine, false, 3, 1},   {"three points", AlongLine, false, 3, 3}};
  sheetView_->SetGridAxes({dg::DVec2(3, 4), dg::DVec2(0, -2), dg::DVec2(1e-8, -1e-8)});
  for (const Case& example : cases) {
    SCOPED_TRACE(example.what);
    const Points labels(kThree.begin(), kThree.begin() + static_cast<std::ptrdiff_t>(example.callouts));
    PlaceOnSheet(labels);
    EXPECT_FALSE(RunOnSheet(example.mode, example.distribute, Points(example.points, dg::DPoint2D(1, 2))));
    ExpectPoints(Positions(), labels);
    EXPECT_EQ(UndoHistory::GetCount(sheet_), 0u);
  }
  EXPECT_FALSE(Align2D(callouts_, MinX, false, {}).Execute({}));
  EXPECT_TRUE(Align2D::IsAxisAvailable(sheetView_, AlongAxisX));
  EXPECT_FALSE(Align2D::IsAxisAvailable(sheetView_, AlongAxisZ));
  EXPECT_FALSE(Align2D::IsAxisAvailable(view_, AlongAxisX));
  EXPECT_FALSE(Align2D::IsAxisAvailable({}, AlongAxisX));
}

TEST_F(Align2DTest, SpreadingOnASheetOnlyDistributes) {
  for (const Align_Mode mode : {SpreadX, SpreadY}) {
    PlaceOnSheet(kThree);
    EXPECT_TRUE(RunOnSheet(mode, false));
    ExpectPoints(Positions(), kThree);
    EXPECT_TRUE(RunOnSheet(mode, true));  // along y in both modes
    ExpectPoints(Positions(), {{10, 25}, {50, 0}, {20, 50}});
  }
}

TEST_F(Align2DTest, AllMovesAreOneUndoableEdit) {
  PlaceOnSheet(kThree);
  EXPECT_TRUE(RunOnSheet(MinX, false));
  ExpectPoints(Positions(), {{10, 40}, {10, 0}, {10, 50}});
  for (const auto& callout : callouts_) EXPECT_EQ(sheet_->GetModifiedCount(callout), 1u);
  EXPECT_EQ(UndoHistory::GetCount(sheet_), 1u);
  EXPECT_TRUE(UndoHistory::Undo(sheet_));
  ExpectPoints(Positions(), kThree);
}

TEST_F(Align2DTest, ASlantedLineEndsWhereLabelsWouldLeaveThePage) {
  using zrk::illustration::PenHolder;
  const auto pen = [](dg::LengthUnit::Unit unit, double weight, double halo) {
    const auto preset = zrtest::TextTemplate("A");
    preset->SetLabelBorderPen(zrk::MakeObject<PenHolder>(unit, weight, halo));
    return preset;
  };
  struct Case {
    const char* what;
    zrtest::TemplatePtr preset;
    dg::DVec2 page;
    double end;  // y of the first label at the lower end; negative: the foot on the endless line
  };
  const Case cases[] = {
      {"no preset", {}, {100, 60}, 2},
      {"no border", zrtest::TextTemplate("A"), {100, 60}, 2},
      {"border", pen(dg::LengthUnit::MILLIMETER, 0.35, 0), {100, 60}, 2.175},
      {"border with halo", pen(dg::LengthUnit::MILLIMETER, 0.35, 2), {100, 60}, 2.35},
      {"border with halo in centimetres", pen(dg::LengthUnit::CENTIMETER, 0.035, 0.2), {100, 60}, 2.35},
      {"a label outside", {}, {98.9, 60}, -1},
  };
  for (const Case& example : cases) {
    SCOPED_TRACE(example.what);
    SetPage(example.page);
    PlaceOnSheet({{1, 1}, {99, 59}}, example.preset);
    EXPECT_TRUE(RunOnSheet(AlongAxisX, false));
    const double y = example.end < 0 ? 30 - 0.8 * (49 * 0.6 + 29 * 0.8) : example.end;
    const double x = 50 + (y - 30) * 0.75;
    ExpectPoints(Positions(), {{x, y}, {100 - x, 60 - y}});
  }
  SetPage({0, 60});  // holds labels, but ends no line
  PlaceOnSheet({{0, 10}, {0, 50}});
  EXPECT_TRUE(RunOnSheet(AlongAxisX, false));
  ExpectPoints(Positions(), {{-9.6, 17.2}, {9.6, 42.8}});
}

TEST_F(Align2DTest, CopiesAndMovedCommandsWork) {
  PlaceOnSheet(kThree);
  const Align2D first(callouts_, MaxX, false, sheetView_);
  Align2D copy(first);
  Align2D moved(std::move(copy));
  EXPECT_TRUE(moved.Execute({}));
  ExpectPoints(Positions(), {{50, 40}, {50, 0}, {50, 50}});
}

// Except for spreading, the same labels go to the same places on a sheet and on screen.
TEST_F(Align2DTest, SheetAndScreenAgree) {
  SetPage({0, 0});
  std::mt19937 random(7);
  std::uniform_real_distribution<double> anywhere(-500, 500);
  for (int round = 0; round < 200; ++round) {
    const Align_Mode modes[] = {MinX,    CenterX,    MaxX,       MinY,       MaxY,
                                CenterY, AlongAxisX, AlongAxisY, AlongAxisZ, AlongLine};
    const Align_Mode mode = modes[round % 10];
    const bool distribute = round % 20 >= 10;
    SCOPED_TRACE(::testing::Message() << "round " << round);
    Points labels(3 + random() % 6);
    for (auto& label : labels) label = {anywhere(random), anywhere(random)};
    Place(labels);
    PlaceOnSheet(labels);
    ASSERT_TRUE(Run(mode, distribute, {{1, 1, 1}, {1, 2.5, 1.8}}));
    ASSERT_TRUE(RunOnSheet(mode, distribute, kLine));
    ExpectPoints(Positions(), Pixels());
  }
}

}  // namespace
