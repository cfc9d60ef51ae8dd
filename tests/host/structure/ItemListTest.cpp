#include <zritemlist/ItemList.h>

#include <map>

#include <zrk/illustration/ItemsList.h>

#include "../HostFixture.h"

namespace zrtest {

using zritemlist::ItemList;
using zrk::illustration::ItemRow;

class ItemListTest : public HostFixture {
protected:
  ~ItemListTest() override { ItemList::SetListClearedHook(nullptr); }

  using Rows = std::map<unsigned, ItemRow>;
  [[nodiscard]] Rows GetRows() const {
    Rows rows;
    for (const unsigned id : items_->GetItemIds()) items_->GetRow(id, rows[id]);
    return rows;
  }
  unsigned Add(const PartPtr& part, const std::string& label = "") {
    return list_->AddInstance(part, nullptr, false, label);
  }
  unsigned Add(const std::string& name) { return Add(AddPart(MakeNode(name))); }

  const du::SmartPtr<ItemList> list_ = ItemList::CreateItemListForScene(scene_);
  const du::SmartPtr<zrk::illustration::ItemsList> items_ = list_->GetZrkItemList();
};

TEST_F(ItemListTest, PartsOfOneComponentShareAnItem) {
  const NodePtr bolt = MakeNode("bolt"), nut = MakeNode("nut");
  const PartPtr first = AddPart(bolt);
  const std::pair<PartPtr, unsigned> cases[] = {{first, 1},  {AddPart(nut), 2},         {AddPart(bolt), 1},
                                                {first, 1},  {AddGroup("a", root_), 3}, {AddGroup("a", root_), 4},
                                                {nullptr, 0}};
  for (const auto& [part, item] : cases) EXPECT_EQ(Add(part), item);
  EXPECT_EQ(items_->GetQuantity(1), 2u);

  unsigned id = 99;
  EXPECT_FALSE(list_->GetMatchingItem(AddPart(MakeNode("nut")), id)) << "equal name, other component";
  EXPECT_FALSE(list_->GetMatchingItem(nullptr, id));
  EXPECT_EQ(id, 99u);
  EXPECT_TRUE(list_->GetMatchingItem(AddPart(nut), id));
  EXPECT_EQ(id, 2u);
}

TEST_F(ItemListTest, LabelIsGivenTextOrNextNumberAboveAllLabels) {
  const unsigned named = Add(AddPart(MakeNode("a")), "7");
  Add(AddPart(MakeNode("b")), "X1");
  const unsigned next = Add("c");
  EXPECT_EQ(items_->GetItemLabel(next), "8");
  items_->SetItemLabel(named, "8");
  list_->DeleteItem(next, nullptr);
  EXPECT_EQ(items_->GetItemLabel(Add("d")), "9") << "the other 8 still stands";
}

TEST_F(ItemListTest, UndoOfEditsRestoresStoredValues) {
  const unsigned id = Add("a");
  const Rows before = GetRows();
  const auto operation = MakeOperation();
  items_->SetQuantity(id, 12, operation);
  items_->SetItemTag(id, "T", operation);
  items_->SetItemLabel(id, "9", operation);
  items_->SetIndex(id, 4, operation);
  items_->SetHierarchyIndex(id, {1, 2}, operation);
  items_->SetItemized(id, false, operation);
  items_->SetQuantity(id, 12, operation);
  items_->SetQuantity(5, 3, operation);
  list_->DeleteItem(5, operation);
  EXPECT_EQ(operation->GetStepCount(), 6u) << "no step for an equal value or an unknown item";
  RecordOperation(operation);
  const Rows after = GetRows();
  Undo();
  EXPECT_EQ(GetRows(), before);
  Redo();
  EXPECT_EQ(GetRows(), after);

  const auto deletion = MakeOperation();
  list_->DeleteItem(id, deletion);
  RecordOperation(deletion);
  EXPECT_EQ(Add("b"), id + 1) << "an id is never used again";
  Undo();
  list_->DeleteItem(id + 1, nullptr);
  EXPECT_EQ(GetRows(), after);
}

TEST_F(ItemListTest, ClearAsksTheHookOfEverySceneThatSharesTheListFirst) {
  EXPECT_EQ(ItemList::CreateItemListForScene(scene_), list_);
  auto page = MakeObject<zrk::ShapeScene>();
  ItemList::ShareItemList(scene_, page);
  const auto recorder = MakeObject<Recorder>();
  items_->RegisterObserver(recorder);
  ItemList::SetListClearedHook(
      [&](const du::SmartPtr<zrk::Scene>&, const OperationPtr&) { recorder->log.push_back("asked"); });
  for (const char* name : {"a", "b"}) Add(name);
  list_->ClearList(nullptr);
  page.Reset();
  list_->ClearList(nullptr);
  EXPECT_EQ(recorder->log, (Log{"added 1", "added 2", "asked", "asked", "removed 1", "removed 2", "cleared", "asked"}));
  ItemList::RemoveItemListForScene(scene_);
  EXPECT_FALSE(ItemList::GetItemListForScene(scene_));
}

}  // namespace zrtest
