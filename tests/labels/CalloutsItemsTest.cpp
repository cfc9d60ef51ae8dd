// Callouts follow the figure's item list.
#include <zrk/MakeObject.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using Annotations = std::vector<du::SmartPtr<zrk::Annotation>>;

class CalloutsItemsTest : public zrtest::SceneFixture {
protected:
  [[nodiscard]] CalloutPtr Numbered(const Part& part, std::uint32_t item) const {
    return MakeCallout(zrtest::NumberTemplate(), part, item);
  }
  [[nodiscard]] CalloutPtr AddReferenced(const Part& part, std::uint32_t item) const {
    auto callout = Numbered(part, item);
    scene_->GetAnnoSet()->AddReferencedAnnotation(callout);
    return callout;
  }
  [[nodiscard]] Annotations InScene() const { return scene_->GetAnnoSet()->GetAnnotations(); }
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
  EXPECT_EQ(TextOf(bolt1_) + TextOf(bolt2_) + TextOf(combined), "10102\n10");
  EXPECT_EQ(nut1_->GetSetTextCount(), nutWritten);
  {
    const zrk::Observable::UpdateGroup update(items_);
    for (const char* label : {"11", "12", "13"}) items_->SetItemLabel(boltItem_, label);
    EXPECT_EQ(TextOf(bolt1_), "10");
  }
  EXPECT_EQ(TextOf(bolt1_), "13");
}

TEST_F(CalloutsItemsTest, ARemovedItemTakesItsCalloutsAlongAndTheOperationGivesThemBack) {
  const auto pair = MakeCombined({Numbered(bolt_, boltItem_), Numbered(nut_, nutItem_)});
  Add(pair);
  const auto referenced = AddReferenced(bolt_, boltItem_);
  const auto otherReferenced = AddReferenced(nut_, nutItem_);
  const auto operation = zrk::MakeObject<zrk::Operation>("remove", scene_, true);
  engine_->OnItemRemoved(boltItem_, operation);
  zrk::RecordOperation(operation);
  EXPECT_EQ(InScene(), (Annotations{nut1_, note_}));
  EXPECT_EQ(scene_->GetAnnoSet()->GetReferencedAnnotations(), Annotations{otherReferenced});
  EXPECT_FALSE(IsObserved(referenced));
  EXPECT_EQ(CalloutsOn(bolt_), std::set<CalloutPtr>{note_});
  ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_TRUE(IsIn(bolt1_) && IsIn(bolt2_) && IsIn(pair));
  EXPECT_TRUE(IsIn(referenced));  // its removal was an ordinary one
  EXPECT_TRUE(IsObserved(bolt1_));
  EXPECT_TRUE(items_->IsIndicated(boltItem_));
}

TEST_F(CalloutsItemsTest, RemovalsThatTakeTheNextCalloutsAlongDoNotDisturbTheWalk) {
  const auto nut2 = AddCallout(zrtest::NumberTemplate(), nut_, nutItem_);
  const auto combined = MakeCombined({MakeCallout(zrtest::TextTemplate("x"), bolt_), Numbered(washer_, washerItem_)});
  Add(combined);
  scene_->GetAnnoSet()->AddDependency(bolt1_, bolt2_);
  scene_->GetAnnoSet()->AddDependency(nut1_, nut2);
  engine_->OnItemRemoved(boltItem_, nullptr);
  EXPECT_EQ(InScene(), (Annotations{nut1_, note_, nut2, combined}));
  const unsigned before = view_->GetDirtyCount();
  for (int i = 0; i < 2; ++i) {  // the second time there is nothing left to take
    engine_->OnListCleared(nullptr);
    EXPECT_EQ(InScene(), Annotations{note_});
    EXPECT_EQ(view_->GetDirtyCount(), before + 1);
  }
}

TEST_F(CalloutsItemsTest, ARemovedItemLeavesTheRestOfACombinedCallout) {
  const auto combined =
      MakeCombined({Numbered(bolt_, boltItem_), Numbered(nut_, nutItem_), Numbered(washer_, washerItem_)});
  Add(combined);
  const auto formerSecond = combined->GetCalloutVec()[1];
  ASSERT_EQ(TextOf(combined), "1\n2\n3");
  itemList_->DeleteItem(nutItem_, nullptr);
  EXPECT_EQ(TextOf(combined), "1\n3");
  EXPECT_EQ(CalloutsOn(nut_).count(formerSecond), 0u);
  EXPECT_EQ(CalloutsOn(bolt_).count(combined), 1u);
  itemList_->DeleteItem(washerItem_, nullptr);
  EXPECT_EQ(combined->GetCount(), 1u);
  EXPECT_FALSE(IsIn(combined));  // with one member left it goes
}

TEST_F(CalloutsItemsTest, QueriesFindCalloutsByItem) {
  const auto combined = MakeCombined({Numbered(washer_, washerItem_), Numbered(nut_, nutItem_)});
  Add(combined);
  std::vector<CalloutPtr> found = {note_};
  engine_->GetItemIdCallouts({nutItem_, boltItem_, nutItem_}, found);
  const std::vector<CalloutPtr> expected = {note_, nut1_, combined, bolt1_, bolt2_, nut1_, combined};
  EXPECT_EQ(found, expected);  // appended, id by id, in order of creation, without dropping repetitions
}

TEST_F(CalloutsItemsTest, ReactionsWithoutAnnotationSetDoNothing) {
  scene_->SetAnnoSet(nullptr);
  engine_->OnItemRemoved(boltItem_, nullptr);
  engine_->OnListCleared(nullptr);
  EXPECT_TRUE(IsObserved(bolt1_));
}

}  // namespace
