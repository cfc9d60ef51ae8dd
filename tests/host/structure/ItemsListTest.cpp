#include <zrk/illustration/ItemsList.h>

#include <functional>

#include "../HostFixture.h"

namespace zrtest {

using zrk::Observable;
using zrk::illustration::ItemRow;
using zrk::illustration::ItemsList;

class ItemsListTest : public HostFixture {
protected:
  ItemsListTest() {
    items_->AddInstance(AddPart(bolt_), false, "");
    items_->AddInstance(AddPart(MakeNode("nut")), false, "");
    items_->RegisterObserver(recorder_);
  }

  const NodePtr bolt_ = MakeNode("bolt");
  const du::SmartPtr<ItemsList> items_ = MakeObject<ItemsList>();
  const du::SmartPtr<Recorder> recorder_ = MakeObject<Recorder>();
};

TEST_F(ItemsListTest, OnlyWhatIsShownNotifiesAContentChange) {
  struct Case {
    const char* name;
    std::function<void()> change;
    Log expected;
  };
  const std::vector<unsigned> path{1, 2};
  const Case cases[] = {
      {"quantity", [&] { items_->SetQuantity(1, 5); }, {"changed 1 +0 -0"}},
      {"equal quantity", [&] { items_->SetQuantity(1, 5); }, {}},
      {"tag", [&] { items_->SetItemTag(1, "T"); }, {"changed 1 +0 -0"}},
      {"label", [&] { items_->SetItemLabel(2, "b"); }, {"changed 2 +0 -0"}},
      {"itemized", [&] { items_->SetItemized(2, false); }, {}},
      {"index", [&] { items_->SetIndex(2, 9); }, {}},
      {"path in flat numbering", [&] { items_->SetHierarchyIndex(1, path); }, {}},
      {"hierarchical numbering", [&] { items_->SetNumberingSettings({true}); }, {"changed 1 +0 -0"}},
      {"path in hierarchical numbering", [&] { items_->SetHierarchyIndex(2, {3}); }, {"changed 2 +0 -0"}},
      {"mark", [&] { items_->SetIndicated(1, true); }, {"marked 1"}},
      {"mark of unknown item", [&] { items_->SetIndicated(7, true); }, {}},
      {"joining instance", [&] { items_->AddInstance(AddPart(bolt_), false, ""); }, {"changed 1 +1 -0"}},
  };
  for (const Case& c : cases) {
    recorder_->log.clear();
    c.change();
    EXPECT_EQ(recorder_->log, c.expected) << c.name;
  }
  EXPECT_EQ(items_->GetItemLabel(1), "1.2");
  EXPECT_EQ(items_->GetItemIds(), (std::vector<unsigned>{1, 2})) << "by index";
}

TEST_F(ItemsListTest, UpdateGroupMergesPerKindAndItemUntilARemoval) {
  ItemRow row;
  {
    const Observable::UpdateGroup outer(items_);
    items_->AddInstance(AddPart(bolt_), false, "");
    items_->SetIndicated(1, true);
    {
      const Observable::UpdateGroup inner(items_);
      items_->SetItemTag(2, "x");
      items_->AddInstance(AddPart(bolt_), false, "");
      items_->SetIndicated(1, false);
    }
    items_->TakeRow(2, row);
    items_->InsertRow(row);
    for (const char* tag : {"y", "z"}) items_->SetItemTag(2, tag);
    EXPECT_TRUE(recorder_->log.empty()) << "the inner group must not deliver";
  }
  EXPECT_EQ(recorder_->log, (Log{"changed 1 +2 -0", "unmarked 1", "removed 2", "added 2", "changed 2 +0 -0"}));
}

TEST_F(ItemsListTest, RestoredRowLeavesInstancesThatAnotherItemTook) {
  ItemRow row;
  ASSERT_TRUE(items_->TakeRow(1, row));
  const PartPtr taken = *row.instances.begin();
  items_->AddInstance(taken, false, "");
  ASSERT_TRUE(items_->InsertRow(row));
  EXPECT_FALSE(items_->InsertRow(row)) << "id in use";
  ASSERT_TRUE(items_->GetRow(1, row));
  EXPECT_TRUE(row.instances.empty());
}

}  // namespace zrtest
