#include <zrk/UndoHistory.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/OperationStep.h>
#include <zrk/RecordOperation.h>
#include <zrk/Scene.h>

namespace {

using du::SmartPtr;
using zrk::MakeObject;
using zrk::Operation;
using zrk::Scene;
using zrk::UndoHistory;

/// Writes its letter into a log: as it is when redone, preceded by '-' when undone.
struct LetterStep final : zrk::OperationStep {
  LetterStep(std::string& text, char name, std::function<void()> onRun)
      : log(text), letter(name), reaction(std::move(onRun)) {}
  void Undo() override {
    log += '-';
    Redo();
  }
  void Redo() override {
    log += letter;
    if (reaction) reaction();
  }
  void OnAddedToOperation() override { log += '+'; }

  std::string& log;
  char letter;
  std::function<void()> reaction;
};

class UndoHistoryTest : public testing::Test {
protected:
  ~UndoHistoryTest() override { UndoHistory::Clear(); }

  SmartPtr<Operation> MakeOperation(const std::string& letters, const SmartPtr<Scene>& scene,
                                    const std::function<void()>& reaction = nullptr) {
    const auto operation = MakeObject<Operation>(letters, scene, true);
    for (const char letter : letters) operation->AddStep(MakeObject<LetterStep>(log_, letter, reaction));
    log_.clear();
    return operation;
  }
  SmartPtr<Operation> Record(const std::string& letters, const std::function<void()>& reaction = nullptr) {
    const auto operation = MakeOperation(letters, scene_, reaction);
    zrk::RecordOperation(operation);
    return operation;
  }
  bool Undo() { return UndoHistory::Undo(scene_); }
  bool Redo() { return UndoHistory::Redo(scene_); }

  std::string log_;
  const SmartPtr<Scene> scene_ = MakeObject<Scene>();
};

TEST_F(UndoHistoryTest, RunsStepsBackwardsThenForwardsUntilAnotherIsRecorded) {
  Record("abc");
  const auto last = Record("de");
  EXPECT_EQ(UndoHistory::GetLast(scene_), last);
  for (const bool expected : {true, true, false}) EXPECT_EQ(Undo(), expected);
  EXPECT_EQ(std::exchange(log_, {}), "-e-d-c-b-a");
  for (const bool expected : {true, true, false}) EXPECT_EQ(Redo(), expected);
  EXPECT_EQ(log_, "abcde");
  Undo();
  Record("c");
  EXPECT_FALSE(Redo());
  EXPECT_EQ(UndoHistory::GetCount(scene_), 2U);
}

TEST_F(UndoHistoryTest, IgnoresWhatIsNoNewUndoableOperation) {
  const auto operation = Record("");
  for (const auto& ignored : {operation, SmartPtr<Operation>(), MakeObject<Operation>("", scene_, false)}) {
    zrk::RecordOperation(ignored);
  }
  EXPECT_EQ(UndoHistory::GetCount(scene_), 1U);
  operation->AddStep(nullptr);
  EXPECT_EQ(operation->GetStepCount(), 0U);
  operation->AddStep(MakeObject<LetterStep>(log_, 'a', nullptr));
  EXPECT_EQ(log_, "+") << "a step hears that it joined an operation";
}

TEST_F(UndoHistoryTest, ScenesHaveHistoriesOfTheirOwn) {
  const auto other = MakeObject<Scene>();
  for (const auto& scene : {scene_, other, SmartPtr<Scene>()}) zrk::RecordOperation(MakeOperation("b", scene));
  EXPECT_TRUE(UndoHistory::Undo(other));
  UndoHistory::Clear(scene_);
  EXPECT_EQ(UndoHistory::GetCount(scene_), 0U);
  EXPECT_EQ(UndoHistory::GetRedoCount(other), 1U);
}

TEST_F(UndoHistoryTest, ReactionsToStepsNeitherRecordNorUndo) {
  bool nested = false;
  const auto reaction = [&] {
    nested = nested || Undo() || Redo();
    zrk::RecordOperation(MakeObject<Operation>("reaction", scene_, true));
  };
  Record("a");
  Record("b", reaction);
  EXPECT_TRUE(Undo());
  EXPECT_EQ(UndoHistory::GetCount(scene_), 1U);
  EXPECT_TRUE(Redo());
  EXPECT_EQ(UndoHistory::GetCount(scene_), 2U);
  EXPECT_FALSE(nested);
  EXPECT_EQ(log_, "-bb");
}

TEST_F(UndoHistoryTest, OperationRecordedByAnotherThreadMeanwhileIsNewer) {
  const auto newer = MakeOperation("n", scene_);
  Record("a", [&] { std::thread([&] { zrk::RecordOperation(newer); }).join(); });
  EXPECT_TRUE(Undo());
  EXPECT_EQ(UndoHistory::GetLast(scene_), newer);
  EXPECT_EQ(UndoHistory::GetRedoCount(scene_), 0U);
}

TEST_F(UndoHistoryTest, HistoryClearedByAStepStaysClear) {
  const std::function<void()> clears[] = {[] { UndoHistory::Clear(); }, [&] { UndoHistory::Clear(scene_); }};
  for (const auto& clear : clears) {
    Record("a", clear);
    EXPECT_TRUE(Undo());
    EXPECT_FALSE(Undo() || Redo());
  }
}

TEST_F(UndoHistoryTest, KeepsTheSceneUntilItIsDestroyed) {
  const long before = du::RefCounted::GetLiveObjectCount();
  auto scene = MakeObject<Scene>();
  Scene* const kept = scene.Get();
  zrk::RecordOperation(MakeOperation("a", scene));
  scene.Reset();
  EXPECT_GT(du::RefCounted::GetLiveObjectCount(), before);
  SmartPtr<Scene>(kept)->Destroy();
  EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), before);
}

}  // namespace
