#include <zrannotations/CombinedCallout.h>

#include <zrannotations/CalloutSnapshot.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::CalloutSnapshot;
using zrannotations::CombinedCallout;

class CombinedCalloutTest : public AnnotationFixture {
protected:
  CombinedCalloutTest() {
    combined_ = Name(MakeObject<CombinedCallout>(), "combined");
    unsigned itemId = 4;
    for (const ShapePtr& shape : {housing_, shaft_, gear_}) {
      members_.push_back(MakeCallout(shape));
      members_.back()->SetItemId(++itemId);
      combined_->AddMember(members_.back());
    }
  }

  du::SmartPtr<CombinedCallout> combined_;
  std::vector<CalloutPtr> members_;
};

TEST_F(CombinedCalloutTest, AnswersForItsMembersItems) {
  std::uint32_t itemId = 0;
  EXPECT_TRUE(combined_->CarriesItemId(7));
  EXPECT_FALSE(combined_->CarriesItemId(8));
  EXPECT_FALSE(combined_->RemoveItemId(8));
  EXPECT_EQ(combined_->RemoveItemId(5), members_[0]);
  EXPECT_FALSE(members_[0]->GetParent());
  EXPECT_EQ(combined_->GetShapeInstanceIdAtPos(0), "gearbox/drive/shaft") << "stands where the next member does";
  EXPECT_TRUE(combined_->GetItemId(itemId));
  EXPECT_EQ(itemId, 6u);
  members_[1]->ClearItemId();
  EXPECT_FALSE(combined_->GetItemId(itemId)) << "the first member's number, not any";
  EXPECT_TRUE(combined_->HasItemId());
  combined_->AddMember(members_[1]);
  combined_->AddMember(nullptr);
  EXPECT_EQ(combined_->GetCount(), 2u);
}

TEST_F(CombinedCalloutTest, JoinsNonEmptyMemberLabelsInOrder) {
  std::vector<CalloutPtr> asked;
  const auto label = [&](const CalloutPtr& member) {
    asked.push_back(member);
    return member == members_[1] ? std::string() : std::to_string(asked.size());
  };
  EXPECT_EQ(CombinedCallout::GenerateLabelString(combined_, label), "1\n3");
  EXPECT_EQ(asked, members_);
  combined_->SetSeparator(" / ");
  asked.clear();
  EXPECT_EQ(CombinedCallout::GenerateLabelString(combined_, label), "1 / 3");
  EXPECT_EQ(CombinedCallout::GenerateLabelString(nullptr, label), "");
}

TEST_F(CombinedCalloutTest, MembersShareItsScene) {
  set_->AddAnnotationToSet(combined_, nullptr);
  EXPECT_EQ(members_[2]->GetScene(), scene_);
  combined_->GetCalloutVec().pop_back();
  combined_->GetCalloutVec().push_back(MakeCallout(gear_));
  EXPECT_FALSE(combined_->GetCalloutVec().back()->GetScene());
  combined_->ReattachChildren();
  EXPECT_EQ(combined_->GetCalloutVec().back()->GetScene(), scene_);
  set_->RemoveAnnotationFromSet(combined_, nullptr);
  EXPECT_FALSE(members_[0]->GetScene());
  combined_.Reset();
  EXPECT_FALSE(members_[0]->GetParent());
}

TEST_F(CombinedCalloutTest, OwnLeadersAreCopiesAndMembersFollowTheScene) {
  EXPECT_EQ(combined_->GetLeaderLineCount(true), 0u);
  combined_->UpdateLeaderLine();
  EXPECT_EQ(combined_->GetShapeInstanceIdAtPos(0), "gearbox/housing");
  members_[0]->GetLeaders().front()->SetHidden(true);
  EXPECT_EQ(combined_->GetLeaderLineCount(false), 1u);

  Move(combined_, housing_, At({0, 0, 9}));
  Move(combined_, gear_, At({0, 0, 8}));
  ExpectPoint(combined_->GetLeaders().front()->GetAnchor(), 0, 0, 9);
  ExpectPoint(members_[2]->GetLeaders().front()->GetAnchor(), 0, 0, 8);

  const CalloutPtr loaded = MakeObject<zrannotations::Callout>();
  loaded->AddUnresolvedLeader("gearbox/drive/gear", "");
  combined_->AddMember(loaded);
  set_->AddAnnotationToSet(combined_, nullptr);
  combined_->UpdateWithCalloutInfo();
  EXPECT_EQ(loaded->GetLeaderLineCount(false), 1u);

  combined_->GetCalloutVec().clear();
  combined_->UpdateLeaderLine();
  EXPECT_EQ(combined_->GetLeaderLineCount(true), 1u) << "no member, no change";
}

TEST_F(CombinedCalloutTest, SnapshotBringsRemovedMembersBack) {
  const CalloutSnapshot before = combined_->TakeSnapshot();
  combined_->RemoveItemId(6);
  combined_->RestoreSnapshot(before, CalloutSnapshot::AllAspects & ~CalloutSnapshot::Members);
  EXPECT_EQ(combined_->GetCount(), 2u);
  combined_->RestoreSnapshot(before, CalloutSnapshot::AllAspects);
  EXPECT_EQ(combined_->GetCalloutVec(), members_);
  EXPECT_EQ(members_[1]->GetParent(), combined_);
}

}  // namespace zrtest
