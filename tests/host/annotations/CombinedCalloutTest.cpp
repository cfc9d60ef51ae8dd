#include <zrannotations/CombinedCallout.h>

#include <zrannotations/CalloutSnapshot.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::CalloutSnapshot;
using zrannotations::CombinedCallout;

class CombinedCalloutTest : public AnnotationFixture {};

TEST_F(CombinedCalloutTest, StandsWhereTheNextMemberDoesUntilASnapshotBringsTheFirstBack) {
  const auto combined = MakeObject<CombinedCallout>();
  std::uint32_t itemId = 4;
  for (const ShapePtr& shape : {housing_, shaft_, gear_}) {
    const CalloutPtr member = MakeCallout(shape);
    member->SetItemId(++itemId);
    combined->AddMember(member);
  }
  const std::vector<CalloutPtr> members = combined->GetCalloutVec();
  const CalloutSnapshot before = combined->TakeSnapshot();
  EXPECT_FALSE(combined->RemoveItemId(8));
  EXPECT_EQ(combined->RemoveItemId(5), members[0]);
  EXPECT_FALSE(members[0]->GetParent());
  EXPECT_EQ(combined->GetShapeInstanceIdAtPos(0), "gearbox/drive/shaft");
  EXPECT_TRUE(combined->GetItemId(itemId));
  EXPECT_EQ(itemId, 6u);
  members[1]->ClearItemId();
  EXPECT_FALSE(combined->GetItemId(itemId)) << "the first member's number, not any";
  EXPECT_TRUE(combined->HasItemId());
  combined->RestoreSnapshot(before, CalloutSnapshot::AllAspects & ~CalloutSnapshot::Members);
  EXPECT_EQ(combined->GetCount(), 2u);
  combined->RestoreSnapshot(before, CalloutSnapshot::AllAspects);
  EXPECT_EQ(combined->GetCalloutVec(), members);
  EXPECT_EQ(members[0]->GetParent(), combined);
}

}  // namespace zrtest
