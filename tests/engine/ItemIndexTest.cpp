// An item's callouts are found by the numbers they carry now, whoever changed them and however often.
#include "engine/EngineFixture.h"

namespace {

using Found = std::vector<zrtest::CalloutPtr>;

class ItemIndexTest : public zrtest::EngineFixture {
protected:
  [[nodiscard]] Found Find(std::uint32_t item) const {
    Found found;
    engine_->GetItemIdCallouts(item, found);
    return found;
  }

  const std::uint32_t boltItem_ = AddItem(bolt_);
  const std::uint32_t nutItem_ = AddItem(nut_);
  const zrtest::CalloutPtr first_ = AddNumber(bolt_, boltItem_);
  const zrtest::CombinedPtr combined_ = MakeCombined({MakeNumber(nut_, nutItem_), MakeNumber(bolt_, boltItem_)});
  const zrtest::CalloutPtr last_ = (Add(combined_), AddNumber(bolt_, boltItem_));
};

TEST_F(ItemIndexTest, ChangedNumbersCountAtOnceAndTheOrderIsThatOfTheSet) {
  EXPECT_EQ(Find(boltItem_), (Found{first_, combined_, last_}));
  first_->SetItemId(nutItem_);
  combined_->GetCalloutVec().pop_back();
  EXPECT_EQ(Find(boltItem_), Found{last_});
  EXPECT_EQ(Find(nutItem_), (Found{first_, combined_}));
  last_->ClearItemId();
  for (const std::uint32_t nobodys : {boltItem_, 0U}) EXPECT_EQ(Find(nobodys), Found{});
}

TEST_F(ItemIndexTest, AChangeIsFoundAfterAnyNumberOfOthers) {
  for (const unsigned others : {4094U, 4095U, 4096U, 20000U}) {
    first_->SetItemId(nutItem_);
    for (unsigned i = 0; i < others; ++i) last_->SetItemId(boltItem_ + (i + 1) % 2);
    EXPECT_EQ(Find(nutItem_).front(), first_) << others;
    first_->SetItemId(boltItem_);
    EXPECT_EQ(Find(boltItem_).front(), first_) << others;
  }
}

}  // namespace
