#include "StructureFixture.h"

#include <map>

#include <zritemlist/ItemList.h>
#include <zrk/illustration/ItemsList.h>

namespace zrtest {

using zritemlist::ItemList;
using zrk::illustration::ItemRow;
using zrk::illustration::ItemValues;

class ItemListTest : public StructureTest {
protected:
  ~ItemListTest() override { ItemList::SetListClearedHook(nullptr); }

  using Rows = std::map<unsigned, ItemRow>;

  [[nodiscard]] Rows GetRows() const {
    Rows rows;
    for (const unsigned id : items_->GetItemIds()) items_->GetRow(id, rows[id]);
    return rows;
  }

  unsigned Add(const Part& part) { return list_->AddInstance(part, nullptr, false, ""); }

  const du::SmartPtr<ItemList> list_ = ItemList::CreateItemListForScene(scene_);
  const du::SmartPtr<zrk::illustration::ItemsList> items_ = list_->GetZrkItemList();
};

TEST_F(ItemListTest, PartsOfOneComponentShareAnItem) {
  const Node bolt = MakeNode("bolt");
  const Node nut = MakeNode("nut");
  const Part first = AddPart(bolt);
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
  EXPECT_EQ(id, 2u);
  id = 99;
  EXPECT_FALSE(items_->GetItemIdForInstance(AddPart(nut), id));
  EXPECT_FALSE(list_->GetMatchingItem(AddPart(MakeNode("nut")), id)) << "equal name, other component";
  EXPECT_FALSE(list_->GetMatchingItem(nullptr, id));
  EXPECT_EQ(id, 99u);
}

TEST_F(ItemListTest, InstancesWithoutComponentGetItemsOfTheirOwn) {
  EXPECT_EQ(Add(AddGroup("a", root_)), 1u);
  EXPECT_EQ(Add(AddGroup("a", root_)), 2u);
  EXPECT_EQ(Add(nullptr), 0u);
}

TEST_F(ItemListTest, LabelIsGivenTextOrNextNumberAboveAllLabels) {
  EXPECT_EQ(Add(AddPart(MakeNode("a"))), 1u);
  const unsigned named = list_->AddInstance(AddPart(MakeNode("b")), nullptr, true, "7");
  EXPECT_EQ(items_->GetItemLabel(named), "7");
  ItemRow row;
  ASSERT_TRUE(items_->GetRow(named, row));
  EXPECT_TRUE(row.addedByHand);
  EXPECT_EQ(items_->GetItemLabel(list_->AddInstance(AddPart(MakeNode("c")), nullptr, false, "X1")), "X1");
  const unsigned next = Add(AddPart(MakeNode("d")));
  EXPECT_EQ(items_->GetItemLabel(next), "8");
  items_->SetItemLabel(named, "8");
  list_->DeleteItem(next, nullptr);
  EXPECT_EQ(items_->GetItemLabel(Add(AddPart(MakeNode("e")))), "9") << "the other 8 still stands";
}

TEST_F(ItemListTest, UnknownItemShowsNothing) {
  std::string label = "old";
  bool flag = true;
  list_->GetItemLabel(5, label, flag);
  EXPECT_EQ(label, "");
  EXPECT_FALSE(flag);
  EXPECT_FALSE(items_->GetItemized(5));
  EXPECT_EQ(items_->GetQuantity(5), 0u);
  EXPECT_TRUE(items_->GetHierarchyIndex(5).empty());
  const auto operation = MakeOperation();
  list_->DeleteItem(5, operation);
  items_->SetQuantity(5, 3, operation);
  EXPECT_EQ(operation->GetStepCount(), 0u);
}

TEST_F(ItemListTest, LabelFlagFollowsItemized) {
  const unsigned id = Add(AddPart(MakeNode("a")));
  items_->SetItemized(id, false);
  std::string label;
  bool flag = true;
  list_->GetItemLabel(id, label, flag);
  EXPECT_EQ(label, "1");
  EXPECT_FALSE(flag);
}

TEST_F(ItemListTest, DeletedIdIsNeverUsedAgainButUndoBringsItBack) {
  const Part part = AddPart(MakeNode("a"));
  const unsigned id = Add(part);
  const auto operation = MakeOperation();
  list_->DeleteItem(id, operation);
  zrk::RecordOperation(operation);
  EXPECT_EQ(Add(AddPart(MakeNode("b"))), 2u);
  ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
  unsigned found = 0;
  EXPECT_TRUE(items_->GetItemIdForInstance(part, found));
  EXPECT_EQ(found, id);
}

TEST_F(ItemListTest, UndoOfEditsRestoresStoredValues) {
  const unsigned id = Add(AddPart(MakeNode("a")));
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
  zrk::RecordOperation(operation);
  const Rows after = GetRows();

  zrk::UndoHistory::Undo(scene_);
  EXPECT_EQ(GetRows(), before);
  zrk::UndoHistory::Redo(scene_);
  EXPECT_EQ(GetRows(), after);
}

TEST_F(ItemListTest, ClearAsksTheHookFirstAndUndoRestoresAllRows) {
  for (const char* name : {"a", "b", "c"}) Add(AddPart(MakeNode(name)));
  const auto recorder = zrk::MakeObject<ItemsRecorder>();
  items_->RegisterObserver(recorder);
  const Rows before = GetRows();
  std::vector<std::size_t> rowsAtHook;
  ItemList::SetListClearedHook([&](const du::SmartPtr<zrk::Scene>& scene, const du::SmartPtr<zrk::Operation>&) {
    EXPECT_EQ(scene, scene_);
    rowsAtHook.push_back(items_->GetItemIds().size());
  });

  const auto operation = MakeOperation();
  list_->ClearList(operation);
  zrk::RecordOperation(operation);
  EXPECT_EQ(rowsAtHook, std::vector<std::size_t>{3});
  EXPECT_TRUE(GetRows().empty());
  EXPECT_EQ(operation->GetStepCount(), 1u);
  EXPECT_EQ(recorder->log, (Log{"removed 1", "removed 2", "removed 3", "cleared"}));

  zrk::UndoHistory::Undo(scene_);
  EXPECT_EQ(GetRows(), before);
  zrk::UndoHistory::Redo(scene_);
  EXPECT_TRUE(GetRows().empty());
  list_->ClearList(operation);
  EXPECT_EQ(operation->GetStepCount(), 1u) << "nothing to clear";
}

TEST_F(ItemListTest, ListBelongsToItsScenesOnly) {
  const auto page = zrk::MakeObject<zrk::ShapeScene>();
  EXPECT_FALSE(ItemList::GetItemListForScene(page));
  EXPECT_FALSE(ItemList::GetItemListForScene(nullptr));
  EXPECT_FALSE(ItemList::CreateItemListForScene(nullptr));
  EXPECT_EQ(ItemList::CreateItemListForScene(scene_), list_);
  ItemList::ShareItemList(scene_, page);
  EXPECT_EQ(ItemList::GetItemListForScene(page), list_);

  const auto recorder = zrk::MakeObject<ItemsRecorder>();
  items_->RegisterObserver(recorder);
  Add(AddPart(MakeNode("a")));
  recorder->log.clear();
  ItemList::RemoveItemListForScene(scene_);
  EXPECT_FALSE(ItemList::GetItemListForScene(scene_));
  EXPECT_EQ(ItemList::GetItemListForScene(page), list_);
  EXPECT_TRUE(recorder->log.empty());
  EXPECT_EQ(items_->GetItemIds().size(), 1u);
}

TEST_F(ItemListTest, ClearSkipsScenesThatAreGone) {
  auto page = zrk::MakeObject<zrk::ShapeScene>();
  ItemList::ShareItemList(scene_, page);
  int calls = 0;
  ItemList::SetListClearedHook(
      [&calls](const du::SmartPtr<zrk::Scene>&, const du::SmartPtr<zrk::Operation>&) { ++calls; });
  list_->ClearList(nullptr);
  EXPECT_EQ(calls, 2);
  page.Reset();
  list_->ClearList(nullptr);
  EXPECT_EQ(calls, 3);
}

}  // namespace zrtest
