// Labels of 2D callouts lined up on a sheet. Where the modes put them is tested beside those on screen.
#include <zrk/UndoHistory.h>
#include <zrk/illustration/TAnnotation.h>

#include "align/AlignFixture.h"

namespace {

using namespace zrcallouts;
using zrk::UndoHistory;
using zrtest::ExpectPoints;
using zrtest::kThree;
using zrtest::Points;
using Align2DTest = zrtest::AlignFixture;

TEST_F(Align2DTest, TooFewCalloutsOrNoDirectionMoveNothing) {
  const struct {
    const char* what;
    Align_Mode mode;
    bool distribute;
    std::size_t callouts, points;
  } cases[] = {{"none", SpreadX, false, 0, 0},          {"one", SpreadX, false, 1, 0},
               {"two to distribute", MinX, true, 2, 0}, {"no axis", AlongAxisZ, false, 3, 0},
               {"one point", AlongLine, false, 3, 1},   {"three points", AlongLine, false, 3, 3}};
  sheetView_->SetGridAxes({dg::DVec2(3, 4), dg::DVec2(0, -2), dg::DVec2(1e-8, -1e-8)});
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.what);
    Points labels = kThree;
    labels.resize(tested.callouts);
    PlaceOnSheet(labels);
    EXPECT_FALSE(RunOnSheet(tested.mode, tested.distribute, Points(tested.points, dg::DPoint2D(1, 2))));
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

TEST_F(Align2DTest, AllMovesAreOneUndoableEditAlsoOfACopiedAndMovedCommand) {
  PlaceOnSheet(kThree);
  const Align2D first(callouts_, MaxX, false, sheetView_);
  Align2D copy(first);
  EXPECT_TRUE(Align2D(std::move(copy)).Execute({}));
  ExpectPoints(Positions(), {{50, 40}, {50, 0}, {50, 50}});
  for (const auto& callout : callouts_) EXPECT_EQ(sheet_->GetModifiedCount(callout), 1u);
  EXPECT_EQ(UndoHistory::GetCount(sheet_), 1u);
  EXPECT_TRUE(UndoHistory::Undo(sheet_));
  ExpectPoints(Positions(), kThree);
}

TEST_F(Align2DTest, ASlantedLineEndsWhereLabelsWouldLeaveThePage) {
  const auto pen = [](dg::LengthUnit::Unit unit, double weight, double halo) {
    const auto preset = zrtest::TextTemplate("A");
    preset->SetLabelBorderPen(zrk::MakeObject<zrk::illustration::PenHolder>(unit, weight, halo));
    return preset;
  };
  const struct {
    const char* what;
    zrtest::TemplatePtr preset;
    double pageWidth;
    double end;  // y of the first label at the lower end
  } cases[] = {
      {"no preset", {}, 100, 2},
      {"no border", zrtest::TextTemplate("A"), 100, 2},
      {"border", pen(dg::LengthUnit::MILLIMETER, 0.35, 0), 100, 2.175},
      {"border with halo", pen(dg::LengthUnit::MILLIMETER, 0.35, 2), 100, 2.35},
      {"border with halo in centimetres", pen(dg::LengthUnit::CENTIMETER, 0.035, 0.2), 100, 2.35},
      {"a label outside: the endless line", {}, 98.9, -12.08},
  };
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.what);
    SetPage({tested.pageWidth, 60});
    PlaceOnSheet({{1, 1}, {99, 59}}, tested.preset);
    EXPECT_TRUE(RunOnSheet(AlongAxisX, false));
    const double y = tested.end, x = 50 + (y - 30) * 0.75;
    ExpectPoints(Positions(), {{x, y}, {100 - x, 60 - y}});
  }
  SetPage({0, 60});  // holds labels, but ends no line
  PlaceOnSheet({{0, 10}, {0, 50}});
  EXPECT_TRUE(RunOnSheet(AlongAxisX, false));
  ExpectPoints(Positions(), {{-9.6, 17.2}, {9.6, 42.8}});
}

}  // namespace
