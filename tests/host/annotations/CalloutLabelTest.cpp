// Label placement of zrannotations::Callout, and the step that moves labels.

#include <dg/Pipeline.h>
#include <zrannotations/LabelMeasure.h>
#include <zrannotations/MoveOperationStep.h>
#include <zrk/ShapeView.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::MoveOperationStep;

class CalloutLabelTest : public AnnotationFixture {
protected:
  CalloutLabelTest() : callout_(MakeCallout(housing_)) {
    set_->AddAnnotationToSet(callout_, nullptr);
    callout_->SetLabelPosition({1, 1, 0});
    listener_->Take();
  }

  /// A view of 1000 x 500 pixels, one pixel a model unit, with y downwards from 500.
  du::SmartPtr<zrk::ShapeView> AddView() {
    const auto view = MakeObject<zrk::ShapeView>();
    view->SetWindowSize(1000, 500);
    dg::Camera3D camera;
    dg::DMat44 matrix;
    matrix.m[1][1] = -1;
    matrix.m[3][1] = 500;
    camera.SetObjectToPixel(matrix);
    view->SetCamera(camera);
    scene_->AddView(view);
    return view;
  }

  CalloutPtr callout_;
};

TEST_F(CalloutLabelTest, LabelOfStateZeroTravelsOnceWithItsPart) {
  ExpectPoint(callout_->GetMarkupLabelPosition(), 11, 1, 0);
  Move(callout_, housing_, At({30, 5, 0}));
  ExpectPoint(callout_->GetMarkupLabelPosition(), 31, 6, 0);
  ExpectPoint(callout_->GetPosition(), 1, 1, 0);
  Move(callout_, housing_, At({30, 5, 0}, 2));
  ExpectPoint(callout_->GetMarkupLabelPosition(), 32, 7, 0);
  callout_->SetLabelPosition(callout_->GetPosition());
  callout_->SetLabelPosition(callout_->GetLabelLocation().GetPos());
  ExpectPoint(callout_->GetMarkupLabelPosition(), 32, 7, 0);
  EXPECT_EQ(listener_->Take(), Log({"moved callout", "moved callout"})) << "neutral calls are no changes";
}

TEST_F(CalloutLabelTest, LabelOfStateOneMovesByTheAnchorAndStaysPutOtherwise) {
  callout_->SetLabelPlacementState(1);
  ExpectPoint(callout_->GetPosition(), 11, 1, 0);
  ExpectPoint(callout_->GetMarkupLabelPosition(), 11, 1, 0);
  Move(callout_, housing_, At({30, 5, 0}));
  ExpectPoint(callout_->GetMarkupLabelPosition(), 31, 6, 0);
  callout_->OnShapeInstanceLocation(gear_);
  callout_->OnShapeInstanceLocation(nullptr);
  ExpectPoint(callout_->GetMarkupLabelPosition(), 31, 6, 0);
  callout_->SetLabelPlacementState(0);
  ExpectPoint(callout_->GetPosition(), 1, 1, 0);

  const CalloutPtr free = MakeCallout(nullptr, "literal");
  free->SetLabelPosition({4, 5, 6});
  free->OnShapeInstanceLocation(housing_);
  ExpectPoint(free->GetMarkupLabelPosition(), 4, 5, 6);
}

TEST_F(CalloutLabelTest, ScreenModePinsTheLabelToThePlaceWhereItIsSeen) {
  const auto view = AddView();
  ExpectPoint(callout_->GetLabelRelativeScreenPosition(view), 11, 499, 0);
  callout_->SetLabelScreenSpaceMode(nullptr);
  EXPECT_FALSE(callout_->IsLabelRelativeToScreen());
  callout_->SetLabelScreenSpaceMode(view);
  EXPECT_NEAR(callout_->GetRelativeScreenPosition().x, 0.011, 1e-12);
  EXPECT_NEAR(callout_->GetRelativeScreenPosition().y, 0.998, 1e-12);
  Move(callout_, housing_, At({300, 50, 0}));
  ExpectPoint(callout_->GetLabelRelativeScreenPosition(view), 11, 499, 0);
  view->SetWindowSize(2000, 1000);
  ExpectPoint(callout_->GetLabelRelativeScreenPosition(view), 22, 998, 0);
  ExpectPoint(callout_->GetLabelRelativeScreenPosition(nullptr), 0, 0, 0);
}

TEST_F(CalloutLabelTest, PixelBoxIsMeasuredAroundTheLabel) {
  const auto view = AddView();
  dg::Pipeline pipeline(2);
  pipeline.SetCamera(view->GetCamera());
  callout_->SetText("12\nM\xC3\xBCtter", false);
  dg::DBox box = callout_->GetMarkupPixelBBox(pipeline, nullptr, 24);
  EXPECT_NEAR(box.GetWidth(), 8 * 6 + 16, 1e-9);
  EXPECT_NEAR(box.GetHeight(), 2 * 24, 1e-9);
  EXPECT_NEAR((box.min.x + box.max.x) / 2, 11, 1e-9);
  EXPECT_NEAR((box.min.y + box.max.y) / 2, 499, 1e-9);
  zrannotations::LabelMeasure::Set([](const zrannotations::Callout&) { return dg::DVec2(10, 20); });
  box = callout_->GetMarkupPixelBBox(pipeline, nullptr, 24);
  zrannotations::LabelMeasure::Set(nullptr);
  EXPECT_NEAR(box.GetWidth(), 10, 1e-9);

  callout_->SetLabelScreenSpaceMode(view);
  callout_->SetRelativeScreenPosition(dg::DPoint2D(0.5, 0.5));
  box = callout_->GetMarkupPixelBBox(pipeline, nullptr, 24);
  EXPECT_NEAR((box.min.x + box.max.x) / 2, 500, 1e-9);
}

TEST_F(CalloutLabelTest, MoveStepActsWhenAddedAndComesBackOnUndo) {
  struct Case {
    const char* name;
    int state;
    unsigned index;
    bool apply;
    double added;
  };
  for (const Case& testCase : {Case{"state 0", 0, 0, true, 7}, Case{"state 1", 1, 0, true, 7},
                               Case{"not applied", 1, 0, false, 1}, Case{"not the label", 1, 1, true, 1}}) {
    callout_->SetLabelPlacementState(testCase.state);
    const dg::Location from = At({1, 1, 0});
    callout_->SetLabelPosition(from.GetPos());
    const OperationPtr operation = MakeOperation();
    operation->AddStep(MakeObject<MoveOperationStep>(callout_, testCase.index, from, At({7, 1, 0}), testCase.apply));
    EXPECT_EQ(callout_->GetPosition().x, testCase.added) << testCase.name;
    RecordOperation(operation);
    ASSERT_TRUE(Undo());
    EXPECT_EQ(callout_->GetPosition().x, 1) << testCase.name;
  }
  MoveOperationStep empty(nullptr, 0, dg::Location(), dg::Location(), true);
  empty.OnAddedToOperation();
}

TEST_F(CalloutLabelTest, MoveStepOfAScreenRelativeLabelRestoresTheRelativePosition) {
  const auto view = AddView();
  callout_->SetLabelScreenSpaceMode(view);
  const dg::DPoint2D before = callout_->GetRelativeScreenPosition();
  const OperationPtr operation = MakeOperation();
  operation->AddStep(
      MakeObject<MoveOperationStep>(callout_, 0, At({before.x, before.y, 0}), At({0.25, 0.75, 0}), true));
  RecordOperation(operation);
  EXPECT_EQ(callout_->GetRelativeScreenPosition().x, 0.25);
  callout_->ClearLabelScreenSpaceMode();  // must not change what the recorded step means
  ASSERT_TRUE(Undo());
  EXPECT_EQ(callout_->GetRelativeScreenPosition().x, before.x);
  EXPECT_EQ(callout_->GetRelativeScreenPosition().y, before.y);
  ExpectPoint(callout_->GetPosition(), 1, 1, 0);
}

}  // namespace zrtest
