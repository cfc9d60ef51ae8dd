// View-level notifications, and items that are marked as indicated.
#include <dg/Camera3D.h>
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/Illustration3dView.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::SceneFixture;

class CalloutsViewTest : public SceneFixture {
protected:
  static dg::Camera3D CameraFrom(double x) {
    dg::Camera3D camera;
    camera.SetOrthographic({x, 0, 10}, {0, 0, 0}, {0, 1, 0}, 10, 800, 600);
    return camera;
  }

  Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  Part nut_ = structure_->AddPart(structure_->Root(), "nut");
};

TEST_F(CalloutsViewTest, APaletteChangeRefreshesEveryObservedCalloutOnce) {
  const auto callout = AddCallout(zrtest::NumberTemplate(), bolt_);
  const auto filed = MakeCallout(zrtest::NumberTemplate(), bolt_);
  engine_->AddToMap(filed);
  scene_->NotifyPaletteChanged();
  EXPECT_EQ(callout->GetRefreshColorsCount(), 1u);
  EXPECT_EQ(filed->GetRefreshColorsCount(), 0u);
}

TEST_F(CalloutsViewTest, AWindowChangeAsksOnceForEachShownLeader) {
  const auto callout = MakeCallout(zrtest::NumberTemplate(), bolt_);
  AddLeader(callout, nut_);
  AddLeader(callout, nut_);
  callout->GetLeaders()[2]->SetHidden(true);
  callout->SetInsetAtPos(zrk::MakeObject<zrannotations::Inset>(), 0);  // the second leader has no inset
  Add(callout);
  const unsigned before = callout->GetVisibleWithinInsetBoundsCount();
  view_->SetWindowSize(640, 480);
  EXPECT_EQ(callout->GetVisibleWithinInsetBoundsCount() - before, 2u);
}

TEST_F(CalloutsViewTest, TheTimerTakesAMovedCameraOverUnlessHiddenCalloutsAreDrawn) {
  dg::Camera3D last;
  view_->SetCamera(CameraFrom(1));
  scene_->SetDrawWhenHidden(true);
  engine_->OnHandleTimeoutEvent(view_, last);
  EXPECT_EQ(last, dg::Camera3D());
  scene_->SetDrawWhenHidden(false);
  engine_->OnHandleTimeoutEvent(nullptr, last);
  EXPECT_EQ(last, dg::Camera3D());
  engine_->OnHandleTimeoutEvent(view_, last);
  EXPECT_EQ(last, CameraFrom(1));

  const auto stranger = zrk::MakeObject<zrk::ShapeView>();  // in no illustration scene
  stranger->SetCamera(CameraFrom(2));
  engine_->OnHandleTimeoutEvent(stranger, last);
  EXPECT_EQ(last, CameraFrom(1));
}

TEST_F(CalloutsViewTest, ItemsAreIndicatedWhileACalloutShowsThem) {
  const std::uint32_t item = AddItem(bolt_);
  const auto callout = AddCallout(zrtest::NumberTemplate(), bolt_, item);
  engine_->SetIndicated(callout, false);
  EXPECT_TRUE(items_->IsIndicated(item));  // the callout itself still shows it
  const auto other = MakeCallout(zrtest::NumberTemplate(), nut_, AddItem(nut_));
  engine_->SetIndicated(other, true);
  EXPECT_TRUE(items_->IsIndicated(AddItem(nut_)));
  engine_->SetIndicated(other, false);  // not registered: nobody shows it
  EXPECT_FALSE(items_->IsIndicated(AddItem(nut_)));

  engine_->SetIndicated(nullptr, true);
  engine_->SetIndicated(MakeCallout(zrtest::NumberTemplate(), nut_), true);
  engine_->SetIndicated(zrk::MakeObject<zrannotations::CombinedCallout>(), true);
  EXPECT_FALSE(items_->IsIndicated(AddItem(nut_)));
}

}  // namespace
