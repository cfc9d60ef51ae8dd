#include <zritemlist/ItemList.h>

#include <map>

#include <zrk/illustration/ItemsList.h>

#include "StructureFixture.h"

namespace zrtest {

using zritemlist::ItemList;
using zrk::illustration::ItemRow;

class ItemListTest : public StructureTest {
protected:
  ~ItemListTest() override { ItemList::SetListClearedHook(nullptr); }

  using Rows = std::map<unsigned, ItemRow>;
  [[nodiscard]] Rows GetRows() const {
    Rows rows;
    for (const unsigned id : items_->GetItemIds()) items_->GetRow(id, rows[id]);
    return rows;
  }
  unsigned Add(const PartPtr& part) { return list_->AddInstance(part, nullptr, false, ""); }
  unsigned Add(const std::string& name) { return Add(AddPart(MakeNode(name))); }
  du::SmartPtr<Recorder> Observe() {
    const auto recorder = MakeObject<Recorder>();
    items_->RegisterObserver(recorder);
    return recorder;
  }

  const du::SmartPtr<ItemList> list_ = ItemList::CreateItemListForScene(scene_);
  const du::SmartPtr<zrk::illustration::ItemsList> items_ = list_->GetZrkItemList();
};

TEST_F(ItemListTest, PartsOfOneComponentShareAnItem) {
  const NodePtr bolt = MakeNode("bolt"), nut = MakeNode("nut");
  const PartPtr first = AddPart(bolt);
  EXPECT_EQ(Add(first), 1u);
  EXPECT_EQ(Add(AddPart(nut)), 2u);
  EXPECT_EQ(Add(AddPart(bolt)), 1u);
  EXPECT_EQ(Add(first), 1u) << "already in the list";
  EXPECT_EQ(items_->GetQuantity(1), 2u);
  EXPECT_EQ(items_->GetItemLabel(2), "2");
  EXPECT_TRUE(items_->GetItemized(2));
  EXPECT_EQ(items_->GetIndex(2), 2u);

  unsigned id = 99;
  EXPECT_TRUE(list_->GetMatchingItem(AddPart(nut), id));
  EXPECT_EQ(std::exchange(id, 99), 2u);
  EXPECT_FALSE(items_->GetItemIdForInstance(AddPart(nut), id));
  EXPECT_FALSE(list_->GetMatchingItem(AddPart(MakeNode("nut")), id)) << "equal name, other component";
  EXPECT_FALSE(list_->GetMatchingItem(nullptr, id));
  EXPECT_EQ(id, 99u);

  EXPECT_EQ(Add(AddGroup("a", root_)), 3u) << "an instance without component has an item of its own";
  EXPECT_EQ(Add(AddGroup("a", root_)), 4u);
  EXPECT_EQ(Add(PartPtr()), 0u);
}

TEST_F(ItemListTest, LabelIsGivenTextOrNextNumberAboveAllLabels) {
  EXPECT_EQ(Add("a"), 1u);
  const unsigned named = list_->AddInstance(AddPart(MakeNode("b")), nullptr, true, "7");
  EXPECT_EQ(items_->GetItemLabel(named), "7");
  EXPECT_TRUE(GetRows()[named].addedByHand);
  EXPECT_EQ(items_->GetItemLabel(list_->AddInstance(AddPart(MakeNode("c")), nullptr, false, "X1")), "X1");
  const unsigned next = Add("d");
  EXPECT_EQ(items_->GetItemLabel(next), "8");
  items_->SetItemLabel(named, "8");
  list_->DeleteItem(next, nullptr);
  EXPECT_EQ(items_->GetItemLabel(Add("e")), "9") << "the other 8 still stands";
}

TEST_F(ItemListTest, UnknownItemShowsNothingAndLabelFlagFollowsItemized) {
  const unsigned id = Add("a");
  items_->SetItemized(id, false);
  for (const unsigned asked : {id, 5u}) {
    std::string label = "old";
    bool flag = true;
    list_->GetItemLabel(asked, label, flag);
    EXPECT_EQ(label, asked == id ? "1" : "");
    EXPECT_FALSE(flag);
  }
  EXPECT_FALSE(items_->GetItemized(5));
  EXPECT_EQ(items_->GetQuantity(5), 0u);
  EXPECT_TRUE(items_->GetHierarchyIndex(5).empty());
  const auto operation = MakeOperation();
  list_->DeleteItem(5, operation);
  items_->SetQuantity(5, 3, operation);
  EXPECT_EQ(operation->GetStepCount(), 0u);
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
  EXPECT_EQ(operation->GetStepCount(), 6u);
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

TEST_F(ItemListTest, ClearAsksTheHookFirst) {
  for (const char* name : {"a", "b", "c"}) Add(name);
  const auto recorder = Observe();
  std::vector<std::size_t> rowsAtHook;
  ItemList::SetListClearedHook([&](const du::SmartPtr<zrk::Scene>& scene, const OperationPtr&) {
    EXPECT_EQ(scene, scene_);
    rowsAtHook.push_back(items_->GetItemIds().size());
  });
  const auto operation = MakeOperation();
  list_->ClearList(operation);
  EXPECT_EQ(rowsAtHook, std::vector<std::size_t>{3});
  EXPECT_TRUE(GetRows().empty());
  EXPECT_EQ(recorder->log, (Log{"removed 1", "removed 2", "removed 3", "cleared"}));
  list_->ClearList(operation);
  EXPECT_EQ(operation->GetStepCount(), 1u) << "nothing to clear";
}

TEST_F(ItemListTest, ListBelongsToItsScenesOnly) {
  auto page = MakeObject<zrk::ShapeScene>();
  EXPECT_FALSE(ItemList::GetItemListForScene(page));
  EXPECT_FALSE(ItemList::GetItemListForScene(nullptr));
  EXPECT_FALSE(ItemList::CreateItemListForScene(nullptr));
  EXPECT_EQ(ItemList::CreateItemListForScene(scene_), list_);
  ItemList::ShareItemList(scene_, page);
  EXPECT_EQ(ItemList::GetItemListForScene(page), list_);

  int calls = 0;
  ItemList::SetListClearedHook([&calls](const du::SmartPtr<zrk::Scene>&, const OperationPtr&) { ++calls; });
  list_->ClearList(nullptr);
  EXPECT_EQ(std::exchange(calls, 0), 2);
  Add("a");
  const auto recorder = Observe();
  ItemList::RemoveItemListForScene(scene_);
  EXPECT_FALSE(ItemList::GetItemListForScene(scene_));
  EXPECT_EQ(ItemList::GetItemListForScene(page), list_);
  EXPECT_EQ(recorder->log, Log());
  EXPECT_EQ(items_->GetItemIds().size(), 1u);

  ItemList::ShareItemList(page, scene_);
  page.Reset();
  list_->ClearList(nullptr);
  EXPECT_EQ(calls, 1) << "the page is gone";
}

}  // namespace zrtest
