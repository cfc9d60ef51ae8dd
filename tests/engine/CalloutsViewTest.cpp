// View-level notifications.
#include <dg/Camera3D.h>
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>

#include "engine/EngineFixture.h"

namespace {

using CalloutsViewTest = zrtest::EngineFixture;

TEST_F(CalloutsViewTest, PaletteAndWindowReachEveryObservedCalloutOnceAndEveryShownLeader) {
  const auto callout = MakeNumber(bolt_);
  AddLeader(callout, nut_);
  AddLeader(callout, nut_);
  callout->GetLeaders()[2]->SetHidden(true);
  callout->SetInsetAtPos(zrk::MakeObject<zrannotations::Inset>(), 0);  // the second leader has no inset
  Add(callout);
  const auto filed = MakeNumber(bolt_);
  engine_->AddToMap(filed);
  const unsigned before = callout->GetVisibleWithinInsetBoundsCount();
  view_->SetWindowSize(640, 480);
  EXPECT_EQ(callout->GetVisibleWithinInsetBoundsCount() - before, 2u);
  scene_->NotifyPaletteChanged();
  EXPECT_EQ(callout->GetRefreshColorsCount(), 1u);
  EXPECT_EQ(filed->GetRefreshColorsCount(), 0u);
}

TEST_F(CalloutsViewTest, TheTimerTakesAMovedCameraOverUnlessHiddenCalloutsAreDrawn) {
  dg::Camera3D moved;
  moved.SetOrthographic({1, 0, 10}, {0, 0, 0}, {0, 1, 0}, 10, 800, 600);
  const auto stranger = zrk::MakeObject<zrk::ShapeView>();  // in no illustration scene
  for (const auto& view : {view_, stranger}) view->SetCamera(moved);
  for (const bool drawWhenHidden : {true, false}) {
    scene_->SetDrawWhenHidden(drawWhenHidden);
    dg::Camera3D last;
    engine_->OnHandleTimeoutEvent(nullptr, last);
    engine_->OnHandleTimeoutEvent(stranger, last);
    EXPECT_EQ(last, dg::Camera3D());
    engine_->OnHandleTimeoutEvent(view_, last);
    EXPECT_EQ(last, drawWhenHidden ? dg::Camera3D() : moved);
  }
}

}  // namespace
