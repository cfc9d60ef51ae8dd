#include <zrk/AnnoSet.h>

#include "AnnotationFixture.h"

namespace zrtest {

class AnnoSetTest : public AnnotationFixture {};

TEST_F(AnnoSetTest, NotifiesOnlyOnRealChanges) {
  const AnnotationPtr member = MakeAnnotation("a");
  set_->AddAnnotationToSet(member, nullptr);
  set_->AddAnnotationToSet(member, nullptr);
  set_->AddAnnotationToSet(nullptr, nullptr);
  EXPECT_EQ(listener_->Take(), Log({"added a"}));
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
  EXPECT_EQ(listener_->Take(), Log({"left a"}));
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
  EXPECT_EQ(listener_->Take(), Log({"deleted master", "deleted child", "deleted grandchild", "left grandchild",
                                    "left child", "left master"}));
  EXPECT_TRUE(Undo());
  EXPECT_EQ(listener_->Take(), Log({"added master", "added child", "added grandchild"}));
  EXPECT_TRUE(Redo());
  EXPECT_EQ(listener_->Take(), Log({"left grandchild", "left child", "left master"}));

  EXPECT_TRUE(Undo());
  listener_->Take();
  set_->RemoveAnnotationWithDependencies(child, nullptr);
  EXPECT_EQ(listener_->Take(), Log({"left master", "left grandchild", "left child"}));
}

TEST_F(AnnoSetTest, SurvivesRemovalInsideTheAddNotification) {
  const AnnotationPtr refused = MakeAnnotation("a");
  listener_->refuses = true;
  const OperationPtr operation = MakeOperation();
  set_->AddAnnotationToSet(refused, operation);
  RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Log({"added a", "left a"}));
  EXPECT_TRUE(Undo());
  EXPECT_EQ(listener_->Take(), Log());
  listener_->refuses = false;
  EXPECT_TRUE(Redo());
  EXPECT_TRUE(set_->Contains(refused));
}

TEST_F(AnnoSetTest, KeepsReferencedAnnotationsApartFromMembers) {
  const AnnotationPtr member = MakeAnnotation("member"), referenced = Name(MakeCallout(nullptr), "referenced");
  set_->AddAnnotationToSet(member, nullptr);
  for (const AnnotationPtr& one : {referenced, member}) set_->AddReferencedAnnotation(one);
  set_->RemoveAnnotationWithDependencies(referenced, nullptr);
  EXPECT_EQ(listener_->Take(), Log({"added member"})) << "a referenced annotation comes unseen";

  const OperationPtr operation = MakeOperation();
  for (const AnnotationPtr& one : {referenced, member}) set_->RemoveRefAnnotationWithDependencies(one, operation);
  RecordOperation(operation);
  EXPECT_EQ(listener_->Take(), Log({"deleted referenced", "left referenced", "deleted member", "left member"}));
  EXPECT_TRUE(set_->GetReferencedAnnotations().empty());
  EXPECT_TRUE(Undo());
  EXPECT_EQ(listener_->Take(), Log({"added member"}));
  EXPECT_EQ(set_->GetReferencedAnnotations(), std::vector<AnnotationPtr>({referenced, member}));
}

TEST_F(AnnoSetTest, MembersLoseTheSceneThatGoesAndFollowTheirSetToAnother) {
  const AnnotationPtr member = MakeAnnotation("a");
  auto other = MakeObject<zrk::ShapeScene>();
  const auto otherSet = other->GetAnnoSet();
  otherSet->AddAnnotationToSet(member, nullptr);
  other.Reset();
  EXPECT_FALSE(member->GetScene());
  scene_->SetAnnoSet(otherSet);
  EXPECT_EQ(member->GetScene(), scene_);
  set_->AddAnnotationToSet(MakeAnnotation("b"), nullptr);
  EXPECT_EQ(listener_->Take(), Log()) << "the replaced set notified";
}

}  // namespace zrtest
