// Random sequences of edits with undo and redo in between. After every step the scene must look, bit by bit, as it did
// when the history last stood there.
#include <algorithm>
#include <random>

#include "EditsFixture.h"

namespace zrtest {

class EditSequenceTest : public EditsTest, public testing::WithParamInterface<unsigned> {
protected:
  std::size_t Draw(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_); }
  PartPtr DrawPart() {
    const std::vector<PartPtr> parts{drive_, housing_, shaft_, gear_, bolt_, otherBolt_};
    return parts[Draw(parts.size())];
  }
  template <class T>
  du::SmartPtr<T> DrawAnnotation() {
    const auto fitting = GetAnnotations<T>(*scene_);
    return fitting.empty() ? nullptr : fitting[Draw(fitting.size())];
  }
  unsigned DrawItem() {
    const auto ids = items_->GetZrkItemList()->GetItemIds();
    return ids.empty() ? 0 : ids[Draw(ids.size())];
  }

  void EditParts(std::size_t kind, const OperationPtr& operation) {
    const double way = static_cast<double>(Draw(1000)) / 7;
    const SceneEdit::PropertyPlace material{{}, du::Symbol("material"), {}};
    const std::string text = std::to_string(Draw(5));
    if (kind == 0) SceneEdit::MoveInstance(scene_, DrawPart(), {way, way / 3, -way}, operation);
    if (kind == 1) SceneEdit::SetInstanceVisible(scene_, DrawPart(), Draw(2) == 0, operation);
    if (kind == 2 && Draw(3) == 0) SceneEdit::RemoveInstance(scene_, DrawPart(), operation);
    if (kind == 3) SceneEdit::RenameInstance(scene_, DrawPart(), text, operation);
    if (kind == 4) SceneEdit::SetInstanceProperty(scene_, DrawPart(), material, du::Symbol(text), operation);
  }
  void EditItems(std::size_t kind, const OperationPtr& operation) {
    const auto list = items_->GetZrkItemList();
    const auto number = static_cast<unsigned>(Draw(9));
    if (kind == 5) items_->RemoveInstance(DrawPart(), operation);
    if (kind == 6) items_->AddInstance(DrawPart(), operation, true, "");
    if (kind == 7) list->SetQuantity(DrawItem(), number, operation);
    if (kind == 8) list->SetItemTag(DrawItem(), std::to_string(number), operation);
    if (kind == 9 && Draw(4) == 0) items_->ClearList(operation);
  }
  void EditAnnotations(std::size_t kind, const OperationPtr& operation) {
    if (kind == 10) AnnotationEdit::AddInset(scene_, DrawPart(), "detail", operation);
    if (kind == 11) AnnotationEdit::RemoveInset(scene_, DrawAnnotation<zrannotations::Inset>(), operation);
    if (kind == 12) AnnotationEdit::AddSymbol(scene_, DrawPart(), operation);
    if (kind == 13) AnnotationEdit::RemoveSymbol(scene_, DrawAnnotation<zrannotations::SymbolAnnotation>(), operation);
    if (kind == 14) {
      const auto first = DrawAnnotation<zrannotations::Callout>();
      AnnotationEdit::JoinCallouts(scene_, {first, DrawAnnotation<zrannotations::Callout>()}, operation);
    }
    if (kind == 15 && Draw(3) == 0) {
      AnnotationEdit::DeleteCallout(scene_, DrawAnnotation<zrannotations::Callout>(), operation);
    }
  }
  void Edit() {
    const auto operation = MakeOperation();
    const std::size_t kind = Draw(16);
    EditParts(kind, operation);
    EditItems(kind, operation);
    EditAnnotations(kind, operation);
    RecordOperation(operation);
  }

  std::mt19937 random_{GetParam()};
};

TEST_P(EditSequenceTest, ReturnsToEveryStateWhenUndoneAndRedone) {
  std::vector<std::string> states{Describe()};
  std::size_t at = 0;
  for (int step = 0; step < 60; ++step) {
    const std::size_t choice = Draw(5);
    if (choice == 0 && at > 0) {
      ASSERT_TRUE(Undo());
      --at;
    } else if (choice == 1 && at + 1 < states.size()) {
      ASSERT_TRUE(Redo());
      ++at;
    } else {
      Edit();
      states.resize(++at);
      states.push_back(Describe());
    }
    ASSERT_EQ(Describe(), states[at]) << "step " << step;
  }
  while (at > 0 && Undo()) ASSERT_EQ(Describe(), states[--at]);
  EXPECT_EQ(at, 0u);
  while (at + 1 < states.size() && Redo()) ASSERT_EQ(Describe(), states[++at]);
  EXPECT_EQ(at + 1, states.size());
}

INSTANTIATE_TEST_SUITE_P(Seeds, EditSequenceTest, testing::Range(0U, 100U));

}  // namespace zrtest
