#include <zrk/AnnoSet.h>

#include <random>
#include <thread>

#include <zrk/AnnoSetVisitor.h>

#include "AnnotationFixture.h"

namespace zrtest {

namespace {

class AnnoSetTest : public AnnotationFixture {};

class NameCollector final : public zrk::AnnoSetVisitor {
public:
  NameCollector(bool includeReferenced, std::size_t limit) : AnnoSetVisitor(includeReferenced), limit_(limit) {}
  bool Visit(const AnnotationPtr& annotation) override {
    visited.push_back(annotation);
    return visited.size() < limit_;
  }
  std::vector<AnnotationPtr> visited;

private:
  std::size_t limit_;
};

TEST_F(AnnoSetTest, NotifiesOnlyOnRealChanges) {
  const AnnotationPtr member = MakeAnnotation("a");
  EXPECT_FALSE(member->GetScene());
  set_->AddAnnotationToSet(member, nullptr);
  set_->AddAnnotationToSet(member, nullptr);
  set_->AddAnnotationToSet(nullptr, nullptr);
  EXPECT_EQ(listener_->Take(), Events({"add a"}));
  EXPECT_EQ(member->GetScene(), scene_);

  const OperationPtr operation = MakeOperation();
  for (const AnnotationPtr& stranger : {MakeAnnotation("stranger"), AnnotationPtr()}) {
    set_->RemoveAnnotationFromSet(stranger, operation);
    set_->RemoveAnnotationWithDependencies(stranger, operation);
    set_->RemoveRefAnnotationWithDependencies(stranger, operation);
    set_->RemoveReferencedAnnotation(stranger);
  }
  EXPECT_EQ(listener_->Take(), Events());
  EXPECT_EQ(operation->GetStepCount(), 0u);

  set_->RemoveAnnotationFromSet(member, nullptr);
  set_->RemoveAnnotationFromSet(member, nullptr);
  EXPECT_EQ(listener_->Take(), Events({"remove a"}));
  EXPECT_FALSE(member->GetScene());
}

TEST_F(AnnoSetTest, TakesDependentsBeforeTheirMasterAndUndoesInReverse) {
  const AnnotationPtr master = MakeAnnotation("master");
  const AnnotationPtr child = MakeAnnotation("child");
  const AnnotationPtr grandchild = MakeAnnotation("grandchild");
  for (const AnnotationPtr& annotation : {master, child, grandchild}) set_->AddAnnotationToSet(annotation, nullptr);
  set_->AddDependency(master, child);
  set_->AddDependency(child, grandchild);
  set_->AddDependency(grandchild, master);  // a ring must end, too
  listener_->Take();

  const OperationPtr operation = MakeOperation();
  set_->RemoveAnnotationWithDependencies(master, operation);
  zrk::RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Events({"deleted master", "deleted child", "deleted grandchild", "remove grandchild",
                                       "remove child", "remove master"}));
  EXPECT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_EQ(listener_->Take(), Events({"add master", "add child", "add grandchild"}));
  EXPECT_EQ(GetMemberNames(), Events({"master", "child", "grandchild"}));
  EXPECT_TRUE(zrk::UndoHistory::Redo(scene_));
  EXPECT_EQ(listener_->Take(), Events({"remove grandchild", "remove child", "remove master"}));

  EXPECT_TRUE(zrk::UndoHistory::Undo(scene_));
  listener_->Take();
  set_->RemoveAnnotationWithDependencies(child, nullptr);
  EXPECT_EQ(listener_->Take(), Events({"remove master", "remove grandchild", "remove child"}));
}

TEST_F(AnnoSetTest, SurvivesRemovalInsideTheAddNotification) {
  const AnnotationPtr refused = MakeAnnotation("a");
  listener_->onAdd = [this](const AnnotationPtr& added) { set_->RemoveAnnotationFromSet(added, nullptr); };
  const OperationPtr operation = MakeOperation();
  set_->AddAnnotationToSet(refused, operation);
  zrk::RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Events({"add a", "remove a"}));
  EXPECT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_EQ(listener_->Take(), Events());
  listener_->onAdd = nullptr;
  EXPECT_TRUE(zrk::UndoHistory::Redo(scene_));
  EXPECT_TRUE(set_->Contains(refused));
}

TEST_F(AnnoSetTest, RestoresMembersAndTheirOrderThroughAnySequence) {
  std::mt19937 random(7);
  std::vector<AnnotationPtr> pool;
  for (int i = 0; i < 12; ++i) pool.push_back(MakeAnnotation(std::to_string(i)));
  for (int i = 0; i + 1 < 12; i += 3) set_->AddDependency(pool[i], pool[i + 1]);
  std::vector<Events> states{GetMemberNames()};
  for (int step = 0; step < 200; ++step) {
    const OperationPtr operation = MakeOperation();
    for (int change = 0; change < 3; ++change) {
      const AnnotationPtr& annotation = pool[random() % pool.size()];
      switch (random() % 3) {
        case 0:
          set_->AddAnnotationToSet(annotation, operation);
          break;
        case 1:
          set_->RemoveAnnotationFromSet(annotation, operation);
          break;
        default:
          set_->RemoveAnnotationWithDependencies(annotation, operation);
      }
    }
    zrk::RecordOperation(operation);
    states.push_back(GetMemberNames());
  }
  for (std::size_t i = states.size() - 1; i-- > 0;) {
    ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
    ASSERT_EQ(GetMemberNames(), states[i]) << "undone to state " << i;
  }
  for (std::size_t i = 1; i < states.size(); ++i) {
    ASSERT_TRUE(zrk::UndoHistory::Redo(scene_));
    ASSERT_EQ(GetMemberNames(), states[i]) << "redone to state " << i;
  }
}

TEST_F(AnnoSetTest, KeepsReferencedAnnotationsApartFromMembers) {
  const CalloutPtr shown = Name(zrk::MakeObject<zrannotations::Callout>(), "shown");
  const CalloutPtr referenced = Name(zrk::MakeObject<zrannotations::Callout>(), "referenced");
  const AnnotationPtr other = MakeAnnotation("other");
  set_->AddAnnotationToSet(shown, nullptr);
  set_->AddAnnotationToSet(other, nullptr);
  set_->AddReferencedAnnotation(referenced);
  set_->AddReferencedAnnotation(other);
  listener_->Take();

  using Found = std::set<AnnotationPtr>;
  Found found;
  set_->GetRefAnnotationsByType(zrk::Annotation::CalloutKind, found, false);
  EXPECT_EQ(found, Found({referenced}));
  set_->GetRefAnnotationsByType(zrk::Annotation::CalloutKind, found, true);
  EXPECT_EQ(found, Found({shown, referenced}));
  EXPECT_FALSE(referenced->GetScene());

  set_->RemoveAnnotationWithDependencies(referenced, nullptr);
  EXPECT_EQ(listener_->Take(), Events());
  const OperationPtr operation = MakeOperation();
  set_->RemoveRefAnnotationWithDependencies(referenced, operation);
  set_->RemoveRefAnnotationWithDependencies(other, operation);
  zrk::RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Events({"deleted referenced", "remove referenced", "deleted other", "remove other"}));
  EXPECT_TRUE(set_->GetReferencedAnnotations().empty());
  EXPECT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_EQ(listener_->Take(), Events({"add other"})) << "a referenced annotation comes back unseen";
  EXPECT_EQ(set_->GetReferencedAnnotations(), std::vector<AnnotationPtr>({referenced, other}));
  set_->RemoveReferencedAnnotation(other);
  EXPECT_TRUE(set_->Contains(other));
}

TEST_F(AnnoSetTest, VisitsMembersThenReferencedOnce) {
  const AnnotationPtr a = MakeAnnotation("a");
  const AnnotationPtr b = MakeAnnotation("b");
  const AnnotationPtr c = MakeAnnotation("c");
  set_->AddAnnotationToSet(a, nullptr);
  set_->AddAnnotationToSet(b, nullptr);
  set_->AddReferencedAnnotation(c);
  set_->AddReferencedAnnotation(a);
  struct Case {
    bool includeReferenced;
    std::size_t limit;
    std::vector<AnnotationPtr> expected;
  };
  for (const Case& testCase : {Case{false, 9, {a, b}}, Case{true, 9, {a, b, c}}, Case{true, 1, {a}}}) {
    NameCollector collector(testCase.includeReferenced, testCase.limit);
    set_->Visit(collector);
    EXPECT_EQ(collector.visited, testCase.expected);
  }
}

TEST_F(AnnoSetTest, LosesItsSceneWhenTheSceneGoesOrTakesAnotherSet) {
  const AnnotationPtr member = MakeAnnotation("a");
  auto other = zrk::MakeObject<zrk::ShapeScene>();
  const auto otherSet = other->GetAnnoSet();
  otherSet->AddAnnotationToSet(member, nullptr);
  EXPECT_EQ(member->GetScene(), other);
  other.Reset();
  EXPECT_FALSE(member->GetScene());
  EXPECT_FALSE(otherSet->GetScene());

  scene_->SetAnnoSet(otherSet);
  EXPECT_EQ(member->GetScene(), scene_);
  set_->AddAnnotationToSet(MakeAnnotation("b"), nullptr);
  EXPECT_EQ(listener_->Take(), Events()) << "the replaced set notified";
}

TEST_F(AnnoSetTest, AddsEachAnnotationOnceFromSeveralThreads) {
  std::vector<AnnotationPtr> annotations;
  for (int i = 0; i < 300; ++i) annotations.push_back(zrk::MakeObject<zrk::Annotation>());
  scene_->RemoveListener(listener_);
  const auto addAll = [&] {
    for (const AnnotationPtr& annotation : annotations) set_->AddAnnotationToSet(annotation, nullptr);
  };
  std::thread first(addAll);
  std::thread second(addAll);
  first.join();
  second.join();
  EXPECT_EQ(set_->GetCount(), annotations.size());
  EXPECT_EQ(set_->GetAnnotations().size(), annotations.size());
}

}  // namespace

}  // namespace zrtest
