// What random host calls once found: groups, members and leaders that change, and what is left of it in labels and
// registry, there and back.
#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/Inset.h>
#include <zrk/CurrentOperation.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/SceneEdit.h>

#include "support/GeneratorFixture.h"
#include "support/RegistryInvariants.h"

namespace {

using zrannotations::AnnotationEdit;
using zrk::illustration::SceneEdit;
using zrtest::Names;

class UndoneGroupChangesTest : public zrtest::GeneratorFixture {
protected:
  UndoneGroupChangesTest() { engine_->SetCombineForSamePart(true); }

  template <class Body>
  void Edit(const Body& body) {
    const auto operation = MakeOperation();
    {
      const zrk::CurrentOperation current(operation);
      body(operation);
    }
    zrk::RecordOperation(operation);
    ExpectWholeRegistry();
  }
  void Undo() {
    EXPECT_TRUE(zrk::UndoHistory::Undo(scene_));
    ExpectWholeRegistry();
  }
  void ExpectWholeRegistry() const {
    EXPECT_EQ(zrtest::RegistryInvariants({scene_, tree_, items_, engine_}).Broken({}), Names());
  }
};

TEST_F(UndoneGroupChangesTest, AJoinedLabelSaysTheFormerQuantityAgain) {
  engine_->SetTemplate(zrtest::TemplateBuilder().Token("zrQTY").Literal("x").Token("zrITM").Build());
  Run({"bolt", "bolt#2", "nut"});
  Edit([&](const auto& operation) { AnnotationEdit::JoinCallouts(scene_, Shown(), operation); });
  const auto before = Describe();
  Edit([&](const auto& operation) { itemList_->RemoveInstance(PartOf("bolt").sbom, operation); });
  const auto after = Describe();
  EXPECT_NE(after, before);
  Undo();
  EXPECT_EQ(Describe(), before);
  ASSERT_TRUE(zrk::UndoHistory::Redo(scene_));
  EXPECT_EQ(Describe(), after);
  Undo();
  EXPECT_EQ(Describe(), before);
}

TEST_F(UndoneGroupChangesTest, AJoinedCalloutStandsWhereItsFirstMemberDoesAndGoesWithTheLastButOne) {
  Run({"bolt", "bolt#2", "nut", "washer"});
  Edit([&](const auto& operation) { AnnotationEdit::JoinCallouts(scene_, Shown(), operation); });
  std::vector<Names> states = {{"1\n2\n3: bolt bolt#2"}, {"1\n2\n3: bolt#2"}, {"2\n3: nut"}, {}};
  EXPECT_EQ(Describe(), states[0]);
  const std::pair<unsigned, const char*> lost[] = {{1, "bolt"}, {1, "bolt#2"}, {2, "nut"}};
  for (std::size_t i = 0; i < 3; ++i) {
    Edit([&](const auto& operation) {
      engine_->UpdateItemGroupCalloutLeaders(lost[i].first, {}, {PartOf(lost[i].second).sbom}, operation);
    });
    EXPECT_EQ(Describe(), states[i + 1]);
  }
  for (states.pop_back(); !states.empty(); states.pop_back()) {
    Undo();
    EXPECT_EQ(Describe(), states.back());
  }
}

TEST_F(UndoneGroupChangesTest, ACalloutWhoseOnlyNewPartShowsNothingGoesWithTheOldOne) {
  Run({"bolt"});
  const auto before = Describe();
  scene_->RemoveShapeInstance(PartOf("bolt#2").shape);
  Edit([&](const auto& operation) {
    items_->BeginUpdate();
    itemList_->AddInstance(PartOf("bolt#2").sbom, operation, false, {});
    itemList_->RemoveInstance(PartOf("bolt").sbom, operation);
    items_->EndUpdate();
  });
  EXPECT_EQ(Describe(), Names());
  Undo();
  EXPECT_EQ(Describe(), before);
}

TEST_F(UndoneGroupChangesTest, AJoinedCalloutLeavesNothingBehindInTheInsetOfAMember) {
  Run({"bolt", "nut"});
  Edit([&](const auto& operation) { AnnotationEdit::AddInset(scene_, PartOf("nut").sbom, "Detail", operation); });
  const auto inset = du::DynamicCast<zrannotations::Inset>(scene_->GetAnnoSet()->GetAnnotations().back());
  Shown().back()->SetInsetAtPos(inset, 0);
  Edit([&](const auto& operation) { AnnotationEdit::JoinCallouts(scene_, Shown(), operation); });
  Undo();
}

TEST_F(UndoneGroupChangesTest, ACalloutGoesWithTheLastPartThatIsLeftToPointAt) {
  const auto both = MakeCallout(zrtest::TemplateBuilder().Property("", "name").Build(), PartOf("bolt"));
  AddLeader(both, PartOf("frame/beam"));
  Add(both);
  for (const char* part : {"frame", "bolt"}) {
    EXPECT_EQ(Shown().size(), 1u) << part;
    Edit([&](const auto& operation) { SceneEdit::RemoveInstance(scene_, PartOf(part).sbom, operation); });
  }
  EXPECT_EQ(Describe(), Names());
  Undo();
  EXPECT_EQ(Shown(), std::vector<zrtest::CalloutPtr>{both});
}

TEST_F(UndoneGroupChangesTest, ALabelWithoutItemShowsItsNextLeaderWhenThePartOfTheShownOneGoes) {
  engine_->SetTemplate(zrtest::TemplateBuilder().Property("", "name").Build());
  engine_->SetDrawOneForSamePart(true);
  for (const char* part : {"bolt", "bolt#2"}) SetProperty(part, "", "name", "M8");
  Run({"bolt", "bolt#2"});
  const Names before{"M8: bolt bolt#2*"}, handedOn{"M8: bolt bolt#2"};
  EXPECT_EQ(Describe(), before);
  Edit([&](const auto& operation) { SceneEdit::RemoveInstance(scene_, PartOf("bolt").sbom, operation); });
  EXPECT_EQ(Describe(), handedOn);
  EXPECT_EQ(Shown().front()->GetLeaderLineCount(false), 1u);
  Edit([&](const auto& operation) { AnnotationEdit::DeleteCallout(scene_, Shown().front(), operation); });
  EXPECT_EQ(Describe(), Names());
  for (const Names& state : {handedOn, before}) {
    Undo();
    EXPECT_EQ(Describe(), state);
  }
}

}  // namespace
