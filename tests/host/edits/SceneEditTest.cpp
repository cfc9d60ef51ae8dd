#include <zrk/illustration/SceneEdit.h>

#include <functional>

#include "EditsFixture.h"

namespace zrtest {

class SceneEditTest : public EditsTest {
protected:
  struct EditCase {
    const char* name;
    std::function<bool(const OperationPtr&)> edit;
    Log done, undone, redone = done;
  };

  void ExpectUndoable(const std::vector<EditCase>& cases) {
    for (const EditCase& test : cases) {
      SCOPED_TRACE(test.name);
      const std::string before = Describe();
      const auto operation = MakeOperation();
      listener_->Take();
      ASSERT_TRUE(test.edit(operation));
      RecordOperation(operation);
      const std::string after = Describe();
      EXPECT_NE(after, before);
      EXPECT_EQ(listener_->Take(), test.done);
      ASSERT_TRUE(Undo());
      EXPECT_EQ(Describe(), before);
      EXPECT_EQ(listener_->Take(), test.undone);
      ASSERT_TRUE(Redo());
      EXPECT_EQ(Describe(), after);
      EXPECT_EQ(listener_->Take(), test.redone);
      ASSERT_TRUE(Undo());
    }
  }
};

TEST_F(SceneEditTest, EditsOfPartsNotifyInOrderAndAreRestoredExactly) {
  const SceneEdit::PropertyPlace material{{}, du::Symbol("material"), {}};
  const SceneEdit::PropertyPlace source{{}, du::Symbol("material"), du::Symbol("step")};
  tree_->SetProperty(shaft_, {}, du::Symbol("material"), du::Symbol("steel"), {});
  const dg::DVec3 way(0.1, 0.7, 0);
  AnnotationEdit::AddSymbol(scene_, shaft_, nullptr);
  ExpectUndoable({
      {"move",
       [&](const auto& op) { return SceneEdit::MoveInstance(scene_, drive_, way, op); },
       {"moved gearbox/drive/shaft", "adjusted callout shaft", "moved gearbox/drive/gear", "adjusted callout gear",
        "moved gearbox/drive/bolt", "moved gearbox/drive/bolt#2", "moved /symbol-1"},
       {"moved /symbol-1", "moved gearbox/drive/bolt#2", "moved gearbox/drive/bolt", "moved gearbox/drive/gear",
        "adjusted callout gear", "moved gearbox/drive/shaft", "adjusted callout shaft"}},
      {"hide",
       [&](const auto& op) { return SceneEdit::SetInstanceVisible(scene_, shaft_, false, op); },
       {"hidden gearbox/drive/shaft", "hidden /symbol-1"},
       {"shown /symbol-1", "shown gearbox/drive/shaft"}},
      {"remove a part that shares its item",
       [&](const auto& op) { return SceneEdit::RemoveInstance(scene_, bolt_, op); },
       {"changed 4 +0 -1", "removed gearbox/drive/bolt", "begin", "remove gearbox/drive/bolt", "end"},
       {"begin", "add gearbox/drive/bolt", "end", "created gearbox/drive/bolt", "changed 4 +1 -0"}},
      {"remove a part with its item",
       [&](const auto& op) { return SceneEdit::RemoveInstance(scene_, gear_, op); },
       {"removed 3", "removed gearbox/drive/gear", "begin", "remove gearbox/drive/gear", "end"},
       {"begin", "add gearbox/drive/gear", "end", "created gearbox/drive/gear", "added 3"}},
      {"rename",
       [&](const auto& op) { return SceneEdit::RenameInstance(scene_, gear_, "wheel", op); },
       {"begin", "new name", "changed name", "end"},
       {"begin", "gone name", "changed name", "end"}},
      {"set a property",
       [&](const auto& op) { return SceneEdit::SetInstanceProperty(scene_, gear_, material, du::Symbol("steel"), op); },
       {"begin", "new material", "changed material", "end"},
       {"begin", "gone material", "changed material", "end"}},
      {"set a property of one shape source",
       [&](const auto& op) { return SceneEdit::SetInstanceProperty(scene_, shaft_, source, du::Symbol("brass"), op); },
       {"begin", "changed material", "changed material", "end"},
       {"begin", "changed material", "end"}},
  });
}

TEST_F(SceneEditTest, EditsOfAnnotationsNotifyInOrderAndAreRestoredExactly) {
  const auto symbol = AnnotationEdit::AddSymbol(scene_, shaft_, nullptr);
  const auto inset = AnnotationEdit::AddInset(scene_, gear_, "detail", nullptr);
  ExpectUndoable({
      {"add a symbol",
       [&](const auto& op) { return AnnotationEdit::AddSymbol(scene_, shaft_, op).Get() != nullptr; },
       {"created /symbol-2", "added annotation"},
       {"left annotation", "removed /symbol-2"}},
      {"remove a symbol",
       [&](const auto& op) { return AnnotationEdit::RemoveSymbol(scene_, symbol, op); },
       {"deleted annotation", "left annotation", "removed /symbol-1"},
       {"created /symbol-1", "added annotation"},
       {"left annotation", "removed /symbol-1"}},
      {"add an inset",
       [&](const auto& op) { return AnnotationEdit::AddInset(scene_, drive_, "Detail A", op).Get() != nullptr; },
       {"added annotation"},
       {"left annotation"}},
      {"remove an inset and a callout",
       [&](const auto& op) {
         return AnnotationEdit::RemoveInset(scene_, inset, op) && !AnnotationEdit::RemoveInset(scene_, inset, op) &&
                AnnotationEdit::DeleteCallout(scene_, callouts_[1], op);
       },
       {"deleted annotation", "left annotation", "deleted callout gear", "left callout gear"},
       {"added callout gear", "added annotation"},
       {"left annotation", "left callout gear"}},
      {"join callouts",
       [&](const auto& op) {
         const auto combined = AnnotationEdit::JoinCallouts(scene_, {callouts_[0], callouts_[2]}, op);
         return combined->GetText(false) == du::Symbol("shaft\nhousing") && callouts_[2]->GetParent() == combined &&
                combined->GetMarkupLabelPosition().x == callouts_[0]->GetMarkupLabelPosition().x &&
                combined->GetShapeInstanceIdAtPos(0) == "gearbox/drive/shaft";
       },
       {"left callout shaft", "left callout housing", "added annotation"},
       {"left annotation", "added callout housing", "added callout shaft"}},
  });
}

TEST_F(SceneEditTest, ChangesNothingWhenTheInstanceIsUnknownOrNothingWouldChange) {
  const auto stranger = MakeObject<zrk::illustration::SbomTree>()->CreateRoot("gearbox", nullptr);
  const auto operation = MakeOperation();
  for (const PartPtr& part : {PartPtr(), stranger}) {
    EXPECT_FALSE(SceneEdit::MoveInstance(scene_, part, {1, 0, 0}, operation));
    EXPECT_FALSE(SceneEdit::SetInstanceVisible(scene_, part, false, operation));
    EXPECT_FALSE(SceneEdit::RemoveInstance(scene_, part, operation));
    EXPECT_FALSE(SceneEdit::RenameInstance(scene_, part, "other", operation));
  }
  EXPECT_FALSE(SceneEdit::MoveInstance(nullptr, gear_, {1, 0, 0}, operation));
  EXPECT_FALSE(SceneEdit::MoveInstance(scene_, gear_, {0, 0, 0}, operation));
  EXPECT_FALSE(SceneEdit::SetInstanceVisible(scene_, gear_, true, operation));
  EXPECT_FALSE(SceneEdit::RemoveInstance(scene_, root_, operation)) << "the root stays";
  EXPECT_FALSE(SceneEdit::SetInstanceProperty(scene_, gear_, {}, du::Symbol("steel"), operation)) << "no name";
  EXPECT_FALSE(SceneEdit::SetInstanceProperty(scene_, gear_, {{}, du::Symbol("material"), {}}, {}, operation));
  EXPECT_FALSE(AnnotationEdit::AddInset(scene_, nullptr, "none", operation));
  EXPECT_FALSE(AnnotationEdit::AddSymbol(scene_, drive_, operation)) << "an assembly has no shape of its own";
  EXPECT_FALSE(AnnotationEdit::JoinCallouts(scene_, {}, operation));
  const CalloutPtr single = callouts_[2];
  for (const CalloutPtr& other : {single, CalloutPtr(), MakeObject<zrannotations::Callout>()}) {
    EXPECT_FALSE(AnnotationEdit::JoinCallouts(scene_, {single, other}, operation));
  }
  EXPECT_EQ(operation->GetStepCount(), 0u);
  EXPECT_EQ(listener_->Take(), Log());
  const CalloutPtr combined = AnnotationEdit::JoinCallouts(scene_, {callouts_[0], callouts_[1]}, nullptr);
  for (const CalloutPtr& other : {callouts_[0], combined}) {
    EXPECT_FALSE(AnnotationEdit::JoinCallouts(scene_, {single, other}, nullptr)) << "joined already";
  }
}

TEST_F(SceneEditTest, TakesSymbolsAndCopiesInInsetsAlongWithTheirPart) {
  const auto symbol = AnnotationEdit::AddSymbol(scene_, gear_, nullptr);
  const auto shape = scene_->GetShapeInstance(symbol->GetInstance());
  const auto inset = AnnotationEdit::AddInset(scene_, gear_, "detail", nullptr);
  const auto copy = inset->GetSubsetScene()->GetShapeInstances().at(0);
  EXPECT_EQ(AnnotationEdit::GetSymbols(scene_, gear_), std::vector{symbol});
  EXPECT_TRUE(inset->ContainsPoint({0.3, 0, 0}));
  EXPECT_FALSE(inset->ContainsPoint({5, 0, 0}));
  const auto at = [&] { return std::pair(shape->GetLocation().GetPos().x, copy->GetLocation().GetPos().x); };
  const auto before = at();
  const auto operation = MakeOperation();
  ASSERT_TRUE(SceneEdit::MoveInstance(scene_, drive_, {2, 0, 0}, operation));
  ASSERT_TRUE(SceneEdit::SetInstanceVisible(scene_, gear_, false, operation));
  EXPECT_EQ(at(), std::pair(before.first + 2, before.second + 2));
  EXPECT_FALSE(copy->IsVisible());
  ASSERT_TRUE(SceneEdit::RemoveInstance(scene_, drive_, operation));
  RecordOperation(operation);
  EXPECT_FALSE(shape->GetShapeScene() || symbol->GetScene() || copy->GetShapeScene());
  ASSERT_TRUE(Undo());
  EXPECT_EQ(at(), before);
  EXPECT_TRUE(shape->GetShapeScene() && symbol->GetScene() && copy->IsVisible());
  EXPECT_EQ(copy->GetShapeScene(), inset->GetSubsetScene());
}

TEST_F(SceneEditTest, AsksForTheCalloutsOfAnItemWhenItsLastInstanceGoes) {
  std::vector<unsigned> asked;
  zritemlist::ItemList::SetItemRemovalHook([&](const auto& scene, unsigned itemId, const OperationPtr& operation) {
    EXPECT_EQ(scene.Get(), scene_.Get());
    EXPECT_TRUE(items_->GetZrkItemList()->GetItemized(itemId)) << "the row is still there";
    AnnotationEdit::DeleteCallout(scene_, callouts_[1], operation);
    asked.push_back(itemId);
  });
  const std::string before = Describe();
  const auto operation = MakeOperation();
  EXPECT_EQ(items_->RemoveInstance(bolt_, operation), 4u);
  EXPECT_EQ(items_->RemoveInstance(gear_, operation), 3u);
  zritemlist::ItemList::SetItemRemovalHook(nullptr);
  EXPECT_EQ(asked, std::vector<unsigned>{3});
  EXPECT_EQ(items_->GetZrkItemList()->GetQuantity(4), 1u);
  RecordOperation(operation);
  ASSERT_TRUE(Undo());
  EXPECT_EQ(Describe(), before);
}

}  // namespace zrtest
