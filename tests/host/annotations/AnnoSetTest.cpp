#include <zrk/AnnoSet.h>

#include <thread>

#include <zrk/AnnoSetVisitor.h>

#include "AnnotationFixture.h"

namespace zrtest {

class AnnoSetTest : public AnnotationFixture {};

struct Collector final : zrk::AnnoSetVisitor {
  Collector(bool includeReferenced, std::size_t maximum) : AnnoSetVisitor(includeReferenced), limit(maximum) {}
  bool Visit(const AnnotationPtr& annotation) override {
    visited.push_back(annotation);
    return visited.size() < limit;
  }
  const std::size_t limit;
  std::vector<AnnotationPtr> visited;
};

TEST_F(AnnoSetTest, NotifiesOnlyOnRealChanges) {
  const AnnotationPtr member = MakeAnnotation("a");
  set_->AddAnnotationToSet(member, nullptr);
  set_->AddAnnotationToSet(member, nullptr);
  set_->AddAnnotationToSet(nullptr, nullptr);
  EXPECT_EQ(listener_->Take(), Log({"add a"}));
  EXPECT_EQ(member->GetScene(), scene_);

  const OperationPtr operation = MakeOperation();
  for (const AnnotationPtr& stranger : {MakeAnnotation("stranger"), AnnotationPtr()}) {
    set_->RemoveAnnotationFromSet(stranger, operation);
    set_->RemoveAnnotationWithDependencies(stranger, operation);
    set_->RemoveRefAnnotationWithDependencies(stranger, operation);
    set_->RemoveReferencedAnnotation(stranger);
  }
  EXPECT_EQ(listener_->Take(), Log());
  EXPECT_EQ(operation->GetStepCount(), 0u);

  set_->RemoveAnnotationFromSet(member, nullptr);
  set_->RemoveAnnotationFromSet(member, nullptr);
  EXPECT_EQ(listener_->Take(), Log({"remove a"}));
  EXPECT_FALSE(member->GetScene());
}

TEST_F(AnnoSetTest, TakesDependentsBeforeTheirMasterAndUndoesInReverse) {
  const AnnotationPtr master = MakeAnnotation("master"), child = MakeAnnotation("child");
  const AnnotationPtr grandchild = MakeAnnotation("grandchild");
  for (const AnnotationPtr& annotation : {master, child, grandchild}) set_->AddAnnotationToSet(annotation, nullptr);
  set_->AddDependency(master, child);
  set_->AddDependency(child, grandchild);
  set_->AddDependency(grandchild, master);  // a ring must end, too
  listener_->Take();

  const OperationPtr operation = MakeOperation();
  set_->RemoveAnnotationWithDependencies(master, operation);
  RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Log({"deleted master", "deleted child", "deleted grandchild", "remove grandchild",
                                    "remove child", "remove master"}));
  EXPECT_TRUE(Undo());
  EXPECT_EQ(listener_->Take(), Log({"add master", "add child", "add grandchild"}));
  EXPECT_EQ(GetMemberNames(), Log({"master", "child", "grandchild"}));
  EXPECT_TRUE(Redo());
  EXPECT_EQ(listener_->Take(), Log({"remove grandchild", "remove child", "remove master"}));

  EXPECT_TRUE(Undo());
  listener_->Take();
  set_->RemoveAnnotationWithDependencies(child, nullptr);
  EXPECT_EQ(listener_->Take(), Log({"remove master", "remove grandchild", "remove child"}));
}

TEST_F(AnnoSetTest, SurvivesRemovalInsideTheAddNotification) {
  const AnnotationPtr refused = MakeAnnotation("a");
  listener_->onAdd = [this](const AnnotationPtr& added) { set_->RemoveAnnotationFromSet(added, nullptr); };
  const OperationPtr operation = MakeOperation();
  set_->AddAnnotationToSet(refused, operation);
  RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Log({"add a", "remove a"}));
  EXPECT_TRUE(Undo());
  EXPECT_EQ(listener_->Take(), Log());
  listener_->onAdd = nullptr;
  EXPECT_TRUE(Redo());
  EXPECT_TRUE(set_->Contains(refused));
}

TEST_F(AnnoSetTest, KeepsReferencedAnnotationsApartFromMembers) {
  const CalloutPtr shown = MakeCallout(nullptr), referenced = Name(MakeCallout(nullptr), "referenced");
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
  set_->RemoveAnnotationWithDependencies(referenced, nullptr);
  EXPECT_EQ(listener_->Take(), Log());
  const OperationPtr operation = MakeOperation();
  set_->RemoveRefAnnotationWithDependencies(referenced, operation);
  set_->RemoveRefAnnotationWithDependencies(other, operation);
  RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Log({"deleted referenced", "remove referenced", "deleted other", "remove other"}));
  EXPECT_TRUE(set_->GetReferencedAnnotations().empty());
  EXPECT_TRUE(Undo());
  EXPECT_EQ(listener_->Take(), Log({"add other"})) << "a referenced annotation comes back unseen";
  EXPECT_EQ(set_->GetReferencedAnnotations(), std::vector<AnnotationPtr>({referenced, other}));
  set_->RemoveReferencedAnnotation(other);
  EXPECT_TRUE(set_->Contains(other));
}

TEST_F(AnnoSetTest, VisitsMembersThenReferencedOnce) {
  const AnnotationPtr a = MakeAnnotation("a"), b = MakeAnnotation("b"), c = MakeAnnotation("c");
  set_->AddAnnotationToSet(a, nullptr);
  set_->AddAnnotationToSet(b, nullptr);
  set_->AddReferencedAnnotation(c);
  set_->AddReferencedAnnotation(a);
  const auto visit = [this](bool includeReferenced, std::size_t limit) {
    Collector collector(includeReferenced, limit);
    set_->Visit(collector);
    return collector.visited;
  };
  using Visited = std::vector<AnnotationPtr>;
  EXPECT_EQ(visit(false, 9), Visited({a, b}));
  EXPECT_EQ(visit(true, 9), Visited({a, b, c}));
  EXPECT_EQ(visit(true, 1), Visited({a})) << "ended by the visitor";
}

TEST_F(AnnoSetTest, LosesItsSceneWhenTheSceneGoesOrTakesAnotherSet) {
  const AnnotationPtr member = MakeAnnotation("a");
  auto other = MakeObject<zrk::ShapeScene>();
  const auto otherSet = other->GetAnnoSet();
  otherSet->AddAnnotationToSet(member, nullptr);
  EXPECT_EQ(member->GetScene(), other);
  other.Reset();
  EXPECT_FALSE(member->GetScene());
  EXPECT_FALSE(otherSet->GetScene());

  scene_->SetAnnoSet(otherSet);
  EXPECT_EQ(member->GetScene(), scene_);
  set_->AddAnnotationToSet(MakeAnnotation("b"), nullptr);
  EXPECT_EQ(listener_->Take(), Log()) << "the replaced set notified";
}

TEST_F(AnnoSetTest, AddsEachAnnotationOnceFromSeveralThreads) {
  std::vector<AnnotationPtr> annotations;
  for (int i = 0; i < 300; ++i) annotations.push_back(MakeObject<zrk::Annotation>());
  scene_->RemoveListener(listener_);
  const auto addAll = [&] {
    for (const AnnotationPtr& annotation : annotations) set_->AddAnnotationToSet(annotation, nullptr);
  };
  std::thread other(addAll);
  addAll();
  other.join();
  EXPECT_EQ(set_->GetAnnotations().size(), annotations.size());
}

}  // namespace zrtest
