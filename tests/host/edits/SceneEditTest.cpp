#include <zrk/illustration/SceneEdit.h>

#include <functional>

#include "EditsFixture.h"

namespace zrtest {

class SceneEditTest : public EditsTest {};

struct EditCase {
  std::string name;
  std::function<bool(const OperationPtr&)> edit;
  Log done, undone;
};

TEST_F(SceneEditTest, NotifiesInOrderAndRestoresExactlyWhenUndoneAndRedone) {
  const SceneEdit::PropertyPlace material{{}, du::Symbol("material"), {}};
  const dg::DVec3 way(0.1, 0.7, 0);
  const std::vector<EditCase> cases{
      {"move",
       [&](const auto& op) { return SceneEdit::MoveInstance(scene_, drive_, way, op); },
       {"moved gearbox/drive/shaft", "moved gearbox/drive/gear", "moved gearbox/drive/bolt",
        "moved gearbox/drive/bolt#2"},
       {"moved gearbox/drive/bolt#2", "moved gearbox/drive/bolt", "moved gearbox/drive/gear",
        "moved gearbox/drive/shaft"}},
      {"hide",
       [&](const auto& op) { return SceneEdit::SetInstanceVisible(scene_, shaft_, false, op); },
       {"hidden gearbox/drive/shaft"},
       {"shown gearbox/drive/shaft"}},
      {"remove a part that shares its item",
       [&](const auto& op) { return SceneEdit::RemoveInstance(scene_, bolt_, op); },
       {"item 4 +0 -1", "removed gearbox/drive/bolt", "begin", "out of tree gearbox/drive/bolt", "end"},
       {"begin", "in tree gearbox/drive/bolt", "end", "created gearbox/drive/bolt", "item 4 +1 -0"}},
      {"remove a part with its item",
       [&](const auto& op) { return SceneEdit::RemoveInstance(scene_, gear_, op); },
       {"no item 3", "removed gearbox/drive/gear", "begin", "out of tree gearbox/drive/gear", "end"},
       {"begin", "in tree gearbox/drive/gear", "end", "created gearbox/drive/gear", "item 3"}},
      {"rename",
       [&](const auto& op) { return SceneEdit::RenameInstance(scene_, gear_, "wheel", op); },
       {"begin", "changed name", "end"},
       {"begin", "changed name", "end"}},
      {"set a property",
       [&](const auto& op) { return SceneEdit::SetInstanceProperty(scene_, gear_, material, du::Symbol("steel"), op); },
       {"begin", "changed material", "end"},
       {"begin", "changed material", "end"}},
  };
  for (const EditCase& test : cases) {
    SCOPED_TRACE(test.name);
    const std::string before = Describe();
    const auto operation = MakeOperation();
    ASSERT_TRUE(test.edit(operation));
    RecordOperation(operation);
    const std::string after = Describe();
    EXPECT_NE(after, before);
    EXPECT_EQ(TakeLog(), test.done);
    ASSERT_TRUE(Undo());
    EXPECT_EQ(Describe(), before);
    EXPECT_EQ(TakeLog(), test.undone);
    ASSERT_TRUE(Redo());
    EXPECT_EQ(Describe(), after);
    EXPECT_EQ(TakeLog(), test.done);
    ASSERT_TRUE(Undo());
    TakeLog();
  }
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
  EXPECT_EQ(operation->GetStepCount(), 0u);
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(SceneEditTest, BringsBackOnlyTheValueOfThatShapeSourceWhenAPropertyIsUndone) {
  const du::Symbol material("material");
  tree_->SetProperty(gear_, {}, material, du::Symbol("steel"), {});
  const auto operation = MakeOperation();
  ASSERT_TRUE(SceneEdit::SetInstanceProperty(scene_, gear_, {{}, material, du::Symbol("step")}, du::Symbol("brass"),
                                             operation));
  RecordOperation(operation);
  EXPECT_EQ(gear_->GetProperty({}, material, du::Symbol("step"))->GetValue(), du::Symbol("brass"));
  ASSERT_TRUE(Undo());
  EXPECT_EQ(gear_->GetProperty({}, material, du::Symbol("step"))->GetValue(), du::Symbol("steel"));
}

TEST_F(SceneEditTest, TakesSymbolsAlongWhenTheirPartMovesOrGoes) {
  const auto symbol = AnnotationEdit::AddSymbol(scene_, gear_, nullptr);
  const auto shape = scene_->GetShapeInstance(symbol->GetInstance());
  const double before = shape->GetLocation().GetPos().x;
  ASSERT_TRUE(SceneEdit::MoveInstance(scene_, gear_, {2, 0, 0}, nullptr));
  EXPECT_EQ(shape->GetLocation().GetPos().x, before + 2);
  const auto operation = MakeOperation();
  ASSERT_TRUE(SceneEdit::RemoveInstance(scene_, drive_, operation));
  RecordOperation(operation);
  EXPECT_FALSE(shape->GetShapeScene());
  EXPECT_FALSE(symbol->GetScene());
  ASSERT_TRUE(Undo());
  EXPECT_TRUE(shape->GetShapeScene());
  EXPECT_TRUE(symbol->GetScene());
}

TEST_F(SceneEditTest, KeepsWhatInsetsShowLikeTheOriginals) {
  const auto inset = AnnotationEdit::AddInset(scene_, gear_, "detail", nullptr);
  const auto copy = inset->GetSubsetScene()->GetShapeInstances().at(0);
  const double before = copy->GetLocation().GetPos().x;
  const auto operation = MakeOperation();
  ASSERT_TRUE(SceneEdit::MoveInstance(scene_, drive_, {2, 0, 0}, operation));
  ASSERT_TRUE(SceneEdit::SetInstanceVisible(scene_, gear_, false, operation));
  EXPECT_EQ(copy->GetLocation().GetPos().x, before + 2);
  EXPECT_FALSE(copy->IsVisible());
  ASSERT_TRUE(SceneEdit::RemoveInstance(scene_, drive_, operation));
  RecordOperation(operation);
  EXPECT_FALSE(copy->GetShapeScene());
  ASSERT_TRUE(Undo());
  EXPECT_EQ(copy->GetShapeScene(), inset->GetSubsetScene());
  EXPECT_EQ(copy->GetLocation().GetPos().x, before);
  EXPECT_TRUE(copy->IsVisible());
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
  EXPECT_EQ(items_->RemoveInstance(gear_, operation), 0u) << "in no item any more";
  zritemlist::ItemList::SetItemRemovalHook(nullptr);
  EXPECT_EQ(asked, std::vector<unsigned>{3});
  EXPECT_EQ(items_->GetZrkItemList()->GetQuantity(4), 1u);
  RecordOperation(operation);
  ASSERT_TRUE(Undo());
  EXPECT_EQ(Describe(), before);
}

}  // namespace zrtest
