// An item's callouts are found by the numbers they carry now, whoever changed them and however often.
#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::SceneFixture;

using Found = std::vector<CalloutPtr>;

class ItemIndexTest : public SceneFixture {
protected:
  [[nodiscard]] Found Find(std::uint32_t item) const {
    Found found;
    engine_->GetItemIdCallouts(item, found);
    return found;
  }
  CalloutPtr AddNumbered(std::uint32_t item) { return AddCallout(zrtest::NumberTemplate(), part_, item); }

  const zrtest::Part part_ = structure_->AddPart(structure_->Root(), "bolt");
  const std::uint32_t bolt_ = AddItem(part_);
  const std::uint32_t nut_ = bolt_ + 1;
  const CalloutPtr first_ = AddNumbered(bolt_);
  const zrtest::CombinedPtr combined_ = MakeCombined(
      {MakeCallout(zrtest::NumberTemplate(), part_, nut_), MakeCallout(zrtest::NumberTemplate(), part_, bolt_)});
  const CalloutPtr last_ = (Add(combined_), AddNumbered(bolt_));
};

TEST_F(ItemIndexTest, ChangedNumbersCountAtOnceAndTheOrderIsThatOfTheSet) {
  EXPECT_EQ(Find(bolt_), (Found{first_, combined_, last_}));
  first_->SetItemId(nut_);
  combined_->GetCalloutVec().pop_back();
  EXPECT_EQ(Find(bolt_), Found{last_});
  EXPECT_EQ(Find(nut_), (Found{first_, combined_}));
  last_->ClearItemId();
  Remove(combined_);
  EXPECT_EQ(Find(bolt_), Found{});
  EXPECT_EQ(Find(0), Found{});
  EXPECT_EQ(Find(nut_), Found{first_});
}

TEST_F(ItemIndexTest, AChangeIsFoundAfterAnyNumberOfOthers) {
  for (const unsigned others : {4094U, 4095U, 4096U, 20000U}) {
    first_->SetItemId(nut_);
    for (unsigned i = 0; i < others; ++i) last_->SetItemId(bolt_ + (i + 1) % 2);
    EXPECT_EQ(Find(nut_).front(), first_) << others;
    first_->SetItemId(bolt_);
    EXPECT_EQ(Find(bolt_).front(), first_) << others;
  }
}

}  // namespace
