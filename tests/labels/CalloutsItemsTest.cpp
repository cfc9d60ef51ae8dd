// Callouts follow the figure's item list.
#include <zrk/MakeObject.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::SceneFixture;

class CalloutsItemsTest : public SceneFixture {
protected:
  [[nodiscard]] CalloutPtr Numbered(const Part& part, std::uint32_t item) const {
    return MakeCallout(zrtest::NumberTemplate(), part, item);
  }
  [[nodiscard]] bool IsIn(const CalloutPtr& callout) const { return scene_->GetAnnoSet()->Contains(callout); }

  const Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  const Part nut_ = structure_->AddPart(structure_->Root(), "nut");
  const Part washer_ = structure_->AddPart(structure_->Root(), "washer");
  const std::uint32_t boltItem_ = AddItem(bolt_);
  const std::uint32_t nutItem_ = AddItem(nut_);
  const std::uint32_t washerItem_ = AddItem(washer_);
  const CalloutPtr bolt1_ = AddCallout(zrtest::NumberTemplate(), bolt_, boltItem_);
  const CalloutPtr bolt2_ = AddCallout(zrtest::NumberTemplate(), bolt_, boltItem_);
  const CalloutPtr nut1_ = AddCallout(zrtest::NumberTemplate(), nut_, nutItem_);
  const CalloutPtr note_ = AddCallout(zrtest::TextTemplate("Note"), bolt_);
};

TEST_F(CalloutsItemsTest, AChangedItemRewritesTheLabelsThatShowIt) {
  const auto combined = MakeCombined({Numbered(nut_, nutItem_), Numbered(bolt_, boltItem_)});
  Add(combined);
  const unsigned nutWritten = nut1_->GetSetTextCount();
  items_->SetItemLabel(boltItem_, "10");
  EXPECT_EQ(TextOf(bolt1_), "10");
  EXPECT_EQ(TextOf(bolt2_), "10");
  EXPECT_EQ(TextOf(combined), "2\n10");
  EXPECT_EQ(nut1_->GetSetTextCount(), nutWritten);
  {
    const zrk::Observable::UpdateGroup update(items_);
    for (const char* label : {"11", "12", "13"}) items_->SetItemLabel(boltItem_, label);
    EXPECT_EQ(TextOf(bolt1_), "10");
  }
  EXPECT_EQ(TextOf(bolt1_), "13");
}

TEST_F(CalloutsItemsTest, ARemovedItemTakesItsCalloutsAlong) {
  const auto referenced = Numbered(bolt_, boltItem_);
  scene_->GetAnnoSet()->AddReferencedAnnotation(referenced);
  const auto otherReferenced = Numbered(nut_, nutItem_);
  scene_->GetAnnoSet()->AddReferencedAnnotation(otherReferenced);
  itemList_->DeleteItem(boltItem_, nullptr);
  EXPECT_FALSE(IsIn(bolt1_));
  EXPECT_FALSE(IsIn(bolt2_));
  EXPECT_FALSE(IsIn(referenced));
  EXPECT_TRUE(IsIn(nut1_));
  EXPECT_TRUE(IsIn(note_));
  EXPECT_EQ(scene_->GetAnnoSet()->GetReferencedAnnotations(),
            std::vector<du::SmartPtr<zrk::Annotation>>{otherReferenced});
  EXPECT_FALSE(IsObserved(referenced));
  EXPECT_EQ(CalloutsOn(bolt_), std::set<CalloutPtr>{note_});
}

TEST_F(CalloutsItemsTest, RemovalsThatTakeTheNextCalloutsAlongDoNotDisturbTheWalk) {
  const auto nut2 = AddCallout(zrtest::NumberTemplate(), nut_, nutItem_);
  const auto washer = AddCallout(zrtest::NumberTemplate(), washer_, washerItem_);
  scene_->GetAnnoSet()->AddDependency(bolt1_, bolt2_);
  scene_->GetAnnoSet()->AddDependency(nut1_, nut2);
  engine_->OnItemRemoved(boltItem_, nullptr);
  EXPECT_EQ(scene_->GetAnnoSet()->GetCount(), 4u);
  engine_->OnListCleared(nullptr);
  EXPECT_EQ(scene_->GetAnnoSet()->GetAnnotations(), std::vector<du::SmartPtr<zrk::Annotation>>{note_});
  EXPECT_FALSE(IsIn(washer));
}

TEST_F(CalloutsItemsTest, ARemovedItemLeavesTheRestOfACombinedCallout) {
  const auto combined =
      MakeCombined({Numbered(bolt_, boltItem_), Numbered(nut_, nutItem_), Numbered(washer_, washerItem_)});
  Add(combined);
  const auto formerSecond = combined->GetCalloutVec()[1];
  ASSERT_EQ(TextOf(combined), "1\n2\n3");
  itemList_->DeleteItem(nutItem_, nullptr);
  EXPECT_EQ(TextOf(combined), "1\n3");
  EXPECT_TRUE(IsIn(combined));
  EXPECT_EQ(CalloutsOn(nut_).count(formerSecond), 0u);
  EXPECT_EQ(CalloutsOn(bolt_).count(combined), 1u);
  itemList_->DeleteItem(washerItem_, nullptr);
  EXPECT_EQ(combined->GetCount(), 1u);
  EXPECT_FALSE(IsIn(combined));  // with one member left it goes
}

TEST_F(CalloutsItemsTest, RemovalInsideAnOperationIsTakenBackWithIt) {
  const auto pair = MakeCombined({Numbered(bolt_, boltItem_), Numbered(nut_, nutItem_)});
  Add(pair);
  const auto referenced = Numbered(bolt_, boltItem_);
  scene_->GetAnnoSet()->AddReferencedAnnotation(referenced);
  const auto operation = zrk::MakeObject<zrk::Operation>("remove", scene_, true);
  engine_->OnItemRemoved(boltItem_, operation);
  zrk::RecordOperation(operation);
  EXPECT_FALSE(IsIn(bolt1_) || IsIn(bolt2_) || IsIn(pair));
  ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_TRUE(IsIn(bolt1_) && IsIn(bolt2_) && IsIn(pair));
  EXPECT_TRUE(IsIn(referenced));  // its removal was an ordinary one
  EXPECT_TRUE(IsObserved(bolt1_));
  EXPECT_TRUE(items_->IsIndicated(boltItem_));
}

TEST_F(CalloutsItemsTest, AClearedListTakesEveryNumberedCalloutAlong) {
  const unsigned before = view_->GetDirtyCount();
  const auto combined = MakeCombined({MakeCallout(zrtest::TextTemplate("x"), bolt_), Numbered(nut_, nutItem_)});
  Add(combined);
  engine_->OnListCleared(nullptr);
  EXPECT_FALSE(IsIn(bolt1_) || IsIn(nut1_) || IsIn(combined));
  EXPECT_TRUE(IsIn(note_));
  EXPECT_EQ(view_->GetDirtyCount(), before + 1);
  engine_->OnListCleared(nullptr);  // nothing left to take
  EXPECT_EQ(view_->GetDirtyCount(), before + 1);
}

TEST_F(CalloutsItemsTest, QueriesFindCalloutsByItemAndInstance) {
  const auto combined = MakeCombined({Numbered(washer_, washerItem_), Numbered(nut_, nutItem_)});
  Add(combined);
  std::vector<CalloutPtr> found = {note_};
  engine_->GetItemIdCallouts({nutItem_, boltItem_, nutItem_}, found);
  const std::vector<CalloutPtr> expected = {note_, nut1_, combined, bolt1_, bolt2_, nut1_, combined};
  EXPECT_EQ(found, expected);  // appended, id by id, in order of creation, without dropping repetitions
  std::set<std::uint32_t> items;
  engine_->GetItemdIds(items);
  EXPECT_EQ(items, (std::set<std::uint32_t>{boltItem_, nutItem_, washerItem_}));
  EXPECT_EQ(CalloutsOn(bolt_), (std::set<CalloutPtr>{bolt1_, bolt2_, note_}));
}

TEST_F(CalloutsItemsTest, ReactionsWithoutAnnotationSetDoNothing) {
  scene_->SetAnnoSet(nullptr);
  engine_->OnItemRemoved(boltItem_, nullptr);
  engine_->OnListCleared(nullptr);
  EXPECT_TRUE(IsObserved(bolt1_));
}

}  // namespace
