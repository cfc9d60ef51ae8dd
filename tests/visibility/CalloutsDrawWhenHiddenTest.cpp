// Callouts that geometry hides, in the bare host: two cubes in line, looked at from either end.
#include <zrcallouts/CalloutsDrawWhenHiddenOperationStep.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "visibility/PickFixture.h"

namespace {

using zrcallouts::CalloutsDrawWhenHiddenOperationStep;
using zrtest::CalloutPtr;
using zrtest::Part;

class CalloutsDrawWhenHiddenTest : public zrtest::PickFixture {
protected:
  void Turn(double towards) const {
    LookAlong({0, 0, towards});
    view_->FireTimeout();
  }
  /// "x" an end that is hidden, "o" one that shows, "." a hidden leader; the callouts in this order: front, back.
  [[nodiscard]] std::string Describe() const {
    std::string text;
    for (const auto& callout : {front_, back_}) {
      for (const auto& leader : callout->GetLeaders()) {
        text += leader->IsHidden() ? '.' : leader->IsOccluded() ? 'x' : 'o';
      }
      text += callout->IsDimmed() ? "! " : " ";
    }
    return text;
  }
  void Switch(bool drawWhenHidden) const {
    const auto operation = zrk::MakeObject<zrk::Operation>("Hidden callouts", scene_, true);
    operation->AddStep(zrk::MakeObject<CalloutsDrawWhenHiddenOperationStep>(engine_, drawWhenHidden));
    zrk::RecordOperation(operation);
  }

  const Part near_ = structure_->AddPart(structure_->Root(), "near", {0, 0, 2});
  const Part far_ = structure_->AddPart(structure_->Root(), "far", {0, 0, -2});
  const CalloutPtr front_ = AddCallout(zrtest::TextTemplate("near"), near_);
  const CalloutPtr back_ = AddCallout(zrtest::TextTemplate("far"), far_);
};

TEST_F(CalloutsDrawWhenHiddenTest, CalloutsComeAndGoAsTheCameraTurns) {
  Turn(-1);
  EXPECT_EQ(Describe(), "o x! ");
  const double seen = front_->GetLeaders()[0]->GetAnchor().z;
  EXPECT_NEAR(seen, 2.5, 1e-9);
  Turn(1);
  EXPECT_EQ(Describe(), "x! o ");
  EXPECT_EQ(front_->GetLeaders()[0]->GetAnchor().z, seen);  // nowhere better to go
  EXPECT_NEAR(back_->GetLeaders()[0]->GetAnchor().z, -2.5, 1e-9);
  AddLeader(back_, near_);  // not filed, so that it stays drawn when its part goes
  Turn(-1);
  EXPECT_EQ(Describe(), "o xo ");
  near_.shape->SetVisible(false);
  view_->SetBackgroundColors({}, {}, {});
  EXPECT_EQ(Describe(), "o ox ");  // what is behind comes out; a leader that is not drawn keeps its mark
}

TEST_F(CalloutsDrawWhenHiddenTest, AHiddenLeaderStepsInForOneWhosePartIsLostAndStays) {
  const Part aside = structure_->AddPart(structure_->Root(), "far", {4, 0, -2});
  AddLeader(back_, aside);
  back_->GetLeaders()[1]->SetHidden(true);
  Turn(-1);
  EXPECT_EQ(Describe(), "o .o ");
  EXPECT_NEAR(back_->GetLeaders()[1]->GetAnchor().z, -1.5, 1e-9);
  Turn(1);
  EXPECT_EQ(Describe(), "x! .o ");
}

TEST_F(CalloutsDrawWhenHiddenTest, TheSwitchIsUndoneWithTheAnchorsThatItMoved) {
  scene_->SetDrawWhenHidden(true);
  Turn(-1);
  EXPECT_EQ(Describe(), "o o ");
  Switch(false);
  EXPECT_EQ(Describe(), "o x! ");
  EXPECT_NEAR(front_->GetLeaders()[0]->GetAnchor().z, 2.5, 1e-9);
  zrk::UndoHistory::Undo(scene_);
  EXPECT_TRUE(scene_->GetDrawWhenHidden());
  EXPECT_EQ(Describe(), "o o ");
  EXPECT_NEAR(front_->GetLeaders()[0]->GetAnchor().z, 2.0, 1e-9);
  EXPECT_FALSE(front_->GetLeaders()[0]->IsAnchorCalculated());
  zrk::UndoHistory::Redo(scene_);
  EXPECT_EQ(Describe(), "o x! ");
  Switch(true);
  EXPECT_EQ(Describe(), "o o ");
  LookAlong({0, 0, 1});
  zrk::UndoHistory::Undo(scene_);
  EXPECT_EQ(Describe(), "x! o ");  // what the present view hides
  const auto operation = zrk::MakeObject<zrk::Operation>("nothing", scene_, true);
  operation->AddStep(zrk::MakeObject<CalloutsDrawWhenHiddenOperationStep>(nullptr, true));
  operation->Undo();
  operation->Redo();
  EXPECT_EQ(Describe(), "x! o ");
}

TEST_F(CalloutsDrawWhenHiddenTest, OnlyViewZeroOfTheOwnSceneIsEvaluated) {
  Turn(-1);
  const auto second = zrk::MakeObject<zrk::ShapeView>();
  scene_->AddView(second);
  LookAlong({0, 0, 1});
  second->SetCamera(view_->GetCamera());
  const auto other = AddScene(false);
  const auto stranger = du::DynamicCast<zrk::ShapeView>(other->GetView(0));
  stranger->SetCamera(view_->GetCamera());
  for (const auto& view : {second, stranger, du::SmartPtr<zrk::ShapeView>()}) engine_->OnDrawWhenHidden(view);
  EXPECT_EQ(Describe(), "o x! ");
}

}  // namespace
