#include <zrk/illustration/ItemsList.h>

#include <functional>
#include <thread>

#include "StructureFixture.h"

namespace zrtest {

using zrk::Observable;
using zrk::illustration::ItemRow;
using zrk::illustration::ItemsList;

class ItemsListTest : public StructureTest {
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
      {"equal mark", [&] { items_->SetIndicated(1, true); }, {}},
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

TEST_F(ItemsListTest, UpdateGroupMergesPerKindAndItem) {
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
    EXPECT_TRUE(recorder_->log.empty()) << "inner group must not deliver";
  }
  EXPECT_EQ(recorder_->log, (Log{"changed 1 +2 -0", "unmarked 1", "changed 2 +0 -0"}));
}

TEST_F(ItemsListTest, RemovalCancelsEarlierContentChangesAndStopsMerging) {
  ItemRow row;
  {
    const Observable::UpdateGroup group(items_);
    items_->SetItemTag(1, "x");
    items_->TakeRow(1, row);
    items_->InsertRow(row);
    items_->SetItemTag(1, "y");
    items_->SetItemTag(2, "z");
  }
  EXPECT_EQ(recorder_->log, (Log{"removed 1", "added 1", "changed 1 +0 -0", "changed 2 +0 -0"}));
}

TEST_F(ItemsListTest, RestoredRowLeavesInstancesThatAnotherItemTook) {
  ItemRow row;
  ASSERT_TRUE(items_->TakeRow(1, row));
  const PartPtr taken = *row.instances.begin();
  items_->AddInstance(taken, false, "");
  ASSERT_TRUE(items_->InsertRow(row));
  EXPECT_FALSE(items_->InsertRow(row)) << "id in use";
  PartSet instances;
  items_->GetInstances(1, instances);
  EXPECT_TRUE(instances.empty());
  unsigned id = 0;
  EXPECT_TRUE(items_->GetItemIdForInstance(taken, id));
  EXPECT_EQ(id, 3u);
}

TEST_F(ItemsListTest, ConcurrentAddsCountEveryInstanceOnce) {
  items_->UnregisterObserver(recorder_);  // observers are called on both threads, and its log has no lock
  constexpr std::size_t kParts = 400;
  std::vector<PartPtr> parts;
  while (parts.size() < kParts) parts.push_back(AddPart(bolt_));
  const auto add = [&](std::size_t first) {
    for (std::size_t i = first; i < kParts; i += 2) {
      const Observable::UpdateGroup group(items_);
      items_->AddInstance(parts[i], false, "");
    }
  };
  std::thread other(add, 1);
  add(0);
  other.join();
  EXPECT_EQ(items_->GetQuantity(1), kParts + 1);
  PartSet instances;
  items_->GetInstances(1, instances);
  EXPECT_EQ(instances.size(), kParts + 1);
}

}  // namespace zrtest
