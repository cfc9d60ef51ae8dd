#include <zrannotations/AnnotationEdit.h>

#include <zrannotations/CalloutOperationStep.h>
#include <zrk/Markup.h>

#include "EditsFixture.h"

namespace zrtest {

class AnnotationEditTest : public EditsTest {};

TEST_F(AnnotationEditTest, RestoresSymbolsInTheRightOrderWhenUndone) {
  const std::string before = Describe();
  auto operation = MakeOperation();
  const auto symbol = AnnotationEdit::AddSymbol(scene_, gear_, operation);
  ASSERT_TRUE(symbol);
  RecordOperation(operation);
  EXPECT_EQ(TakeLog(), (Log{"created /symbol-1", "added annotation"}));
  const std::string with = Describe();
  operation = MakeOperation();
  ASSERT_TRUE(AnnotationEdit::RemoveSymbol(scene_, symbol, operation));
  RecordOperation(operation);
  EXPECT_EQ(TakeLog(), (Log{"deleted annotation", "left annotation", "removed /symbol-1"}));
  EXPECT_EQ(Describe(), before);
  ASSERT_TRUE(Undo());
  EXPECT_EQ(TakeLog(), (Log{"created /symbol-1", "added annotation"}));
  EXPECT_EQ(Describe(), with);
  ASSERT_TRUE(Undo());
  EXPECT_EQ(TakeLog(), (Log{"left annotation", "removed /symbol-1"}));
  EXPECT_EQ(Describe(), before);
  ASSERT_TRUE(Redo());
  EXPECT_EQ(Describe(), with);
  EXPECT_EQ(AnnotationEdit::GetSymbols(scene_, gear_), std::vector({symbol}));
}

TEST_F(AnnotationEditTest, ReplacesCalloutsByOneWhenJoined) {
  const std::string before = Describe();
  const auto operation = MakeOperation();
  const auto combined = AnnotationEdit::JoinCallouts(scene_, {callouts_[0], callouts_[2]}, operation);
  ASSERT_TRUE(combined);
  RecordOperation(operation);
  const std::string joined = Describe();
  EXPECT_EQ(TakeLog(), (Log{"left callout shaft", "left callout housing", "added annotation"}));
  EXPECT_EQ(combined->GetText(false).GetString(), "shaft\nhousing");
  EXPECT_EQ(callouts_[2]->GetParent().Get(), combined.Get());
  EXPECT_EQ(combined->GetMarkupLabelPosition().x, callouts_[0]->GetMarkupLabelPosition().x);
  EXPECT_EQ(combined->GetShapeInstanceIdAtPos(0), "gearbox/drive/shaft");
  ASSERT_TRUE(Undo());
  EXPECT_EQ(TakeLog(), (Log{"left annotation", "added callout housing", "added callout shaft"}));
  EXPECT_EQ(Describe(), before);
  ASSERT_TRUE(Redo());
  EXPECT_EQ(Describe(), joined);
}

TEST_F(AnnotationEditTest, RefusesToJoinWhatIsNotTwoSingleCalloutsOfTheScene) {
  const auto combined = AnnotationEdit::JoinCallouts(scene_, {callouts_[0], callouts_[1]}, nullptr);
  TakeLog();
  const auto stranger = MakeObject<zrannotations::Callout>();
  const CalloutPtr single = callouts_[2];
  EXPECT_FALSE(AnnotationEdit::JoinCallouts(scene_, {}, nullptr));
  EXPECT_FALSE(AnnotationEdit::JoinCallouts(scene_, {single}, nullptr));
  for (const CalloutPtr& other : {single, CalloutPtr(), stranger, callouts_[0], CalloutPtr(combined)}) {
    EXPECT_FALSE(AnnotationEdit::JoinCallouts(scene_, {single, other}, nullptr));
  }
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(AnnotationEditTest, AddsAndRemovesInsetsAndCalloutsUndoably) {
  const std::string before = Describe();
  auto operation = MakeOperation();
  const auto inset = AnnotationEdit::AddInset(scene_, drive_, "Detail A", operation);
  ASSERT_TRUE(inset);
  RecordOperation(operation);
  EXPECT_EQ(inset->GetCaptionText().GetString(), "Detail A");
  EXPECT_TRUE(inset->GetInsetCaption()->IsVisible());
  EXPECT_EQ(inset->GetSubsetScene()->GetShapeInstances().size(), 4u);
  EXPECT_TRUE(inset->ContainsPoint({0.2, 0, 0}));
  EXPECT_FALSE(inset->ContainsPoint({5, 0, 0}));
  operation = MakeOperation();
  ASSERT_TRUE(AnnotationEdit::RemoveInset(scene_, inset, operation));
  EXPECT_FALSE(AnnotationEdit::RemoveInset(scene_, inset, operation)) << "gone already";
  ASSERT_TRUE(AnnotationEdit::DeleteCallout(scene_, callouts_[1], operation));
  RecordOperation(operation);
  EXPECT_EQ(TakeLog(), (Log{"added annotation", "deleted annotation", "left annotation", "deleted callout gear",
                            "left callout gear"}));
  ASSERT_TRUE(Undo());
  EXPECT_EQ(TakeLog(), (Log{"added callout gear", "added annotation"}));
  ASSERT_TRUE(Undo());
  EXPECT_EQ(Describe(), before);
  EXPECT_FALSE(AnnotationEdit::AddInset(scene_, root_->GetParent(), "none", nullptr));
  EXPECT_FALSE(AnnotationEdit::AddSymbol(scene_, drive_, nullptr)) << "an assembly has no shape of its own";
}

TEST_F(AnnotationEditTest, FreesMembersWhenUndoBringsAnEmptyCombinedCalloutBack) {
  const auto combined = MakeObject<zrannotations::CombinedCallout>();
  zrannotations::CalloutOperationStep step(combined);
  combined->AddMember(callouts_[0]);
  step.Undo();
  EXPECT_FALSE(callouts_[0]->GetParent());
  step.Redo();
  EXPECT_EQ(callouts_[0]->GetParent().Get(), combined.Get());
}

}  // namespace zrtest
