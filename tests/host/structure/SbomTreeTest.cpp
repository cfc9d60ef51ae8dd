#include "StructureFixture.h"

#include <zrk/Observable.h>

namespace zrtest {

using zrk::Observable;

class SbomTreeTest : public StructureTest {
protected:
  du::SmartPtr<TreeRecorder> Observe() {
    const auto recorder = zrk::MakeObject<TreeRecorder>();
    tree_->RegisterObserver(recorder, false);
    return recorder;
  }
};

TEST_F(SbomTreeTest, IdsStayUniqueWhenNamesRepeatOrLookLikeIds) {
  const std::vector<std::pair<std::string, std::string>> siblings = {
      {"bolt", "product/bolt"}, {"bolt#2", "product/bolt#2"}, {"bolt", "product/bolt#3"}, {"bolt", "product/bolt#4"},
      {"", "product/unnamed"},  {"", "product/unnamed#2"},    {"a/b", "product/a|b"},     {"a|b", "product/a|b#2"},
  };
  for (const auto& [name, id] : siblings) {
    const Part part = AddGroup(name, root_);
    EXPECT_EQ(part->GetId().GetString(), id);
    EXPECT_EQ(part->GetName(), name);
    EXPECT_EQ(tree_->FindInstance(id), part);
  }
}

TEST_F(SbomTreeTest, RemovedIdIsNotGivenToLaterSibling) {
  const Part first = AddGroup("bolt", root_);
  tree_->RemoveInstance(first);
  EXPECT_EQ(AddGroup("bolt", root_)->GetId().GetString(), "product/bolt#2");
}

TEST_F(SbomTreeTest, RemovedPartOfStructureIsGoneFromTreeAndWeld) {
  const Part weld = AddGroup("frame", root_);
  weld->SetWeld(true);
  const Part group = AddGroup("group", weld);
  const Part leaf = AddGroup("leaf", group);
  ASSERT_TRUE(leaf->IsWeldMember());

  tree_->RemoveInstance(group);
  EXPECT_FALSE(weld->HasChildren());
  EXPECT_FALSE(group->GetParent());
  EXPECT_FALSE(tree_->FindInstance("product/frame/group/leaf"));
  EXPECT_FALSE(leaf->IsWeldMember());
  EXPECT_FALSE(leaf->GetTopWeld());
  EXPECT_FALSE(tree_->AddInstance(group, "late", nullptr)) << "group is in no tree";
}

TEST_F(SbomTreeTest, PartOutlivesItsParentWithoutDanglingLinks) {
  const Part weld = AddGroup("frame", root_);
  weld->SetWeld(true);
  const Part leaf = AddGroup("leaf", weld);
  const Node node = MakeNode("bolt");
  const auto ebom = zrk::MakeObject<zrk::Instance>(node, nullptr, "bolt");
  tree_->AddInstance(weld, "bolt", ebom);
  ASSERT_TRUE(ebom->GetSbomInstance());
  {
    const auto other = zrk::MakeObject<zrk::illustration::SbomTree>();
    const Part child = other->AddInstance(other->CreateRoot("other", nullptr), "child", nullptr);
    other->DestroyTree();
    EXPECT_FALSE(child->GetParent());
  }
  tree_->RemoveInstance(weld);
  EXPECT_FALSE(leaf->GetParent() == root_);
}

TEST_F(SbomTreeTest, WeldQueriesFollowSetWeldAtEveryLevel) {
  const Node node = MakeNode("plate");
  const Part outer = AddGroup("outer", root_);
  const Part inner = AddGroup("inner", outer);
  const Part plate = AddPart(node, inner);
  const Part loose = AddPart(node);

  inner->SetWeld(true);
  EXPECT_EQ(plate->GetTopWeld(), inner);
  EXPECT_FALSE(inner->IsWeldMember());
  outer->SetWeld(true);
  EXPECT_EQ(plate->GetTopWeld(), outer);
  EXPECT_EQ(outer->GetTopWeld(), outer);
  EXPECT_TRUE(inner->IsWeldMember());
  outer->SetWeld(false);
  EXPECT_EQ(plate->GetTopWeld(), inner);
  EXPECT_FALSE(inner->IsWeldMember());
  inner->SetWeld(false);
  EXPECT_FALSE(plate->GetTopWeld());
  EXPECT_FALSE(plate->IsWeldMember());
  EXPECT_FALSE(loose->GetTopWeld());
}

TEST_F(SbomTreeTest, EngineeringInstancesAreThoseOfThePartsBelow) {
  const Node node = MakeNode("plate");
  const auto groupEbom = zrk::MakeObject<zrk::Instance>(node, nullptr, "group");
  const Part group = tree_->AddInstance(root_, "group", groupEbom);
  const Part plate = AddPart(node, group);
  const Part nested = AddPart(node, AddGroup("nested", group));
  AddGroup("placeholder", group);

  std::set<du::SmartPtr<zrk::Instance>> found;
  EXPECT_TRUE(group->GetEbomInstancesForWeld(found));
  EXPECT_EQ(found, (std::set{plate->GetEbomInstance(), nested->GetEbomInstance()}));

  found.clear();
  EXPECT_TRUE(plate->GetEbomInstancesForWeld(found));
  EXPECT_EQ(found, std::set{plate->GetEbomInstance()});

  found.clear();
  EXPECT_FALSE(AddGroup("empty", root_)->GetEbomInstancesForWeld(found));
  EXPECT_TRUE(found.empty());
}

TEST_F(SbomTreeTest, SingleChangeIsWrappedAndOpenUpdateIsNot) {
  const auto recorder = Observe();
  const Part part = AddGroup("a", root_);
  EXPECT_EQ(recorder->log, (Log{"begin", "add product/a", "end"}));

  recorder->log.clear();
  {
    const Observable::UpdateGroup outer(*tree_);
    const Observable::UpdateGroup inner(*tree_);
    tree_->SetProperty(part, "G", "P", "1", "");
    tree_->SetProperty(part, "G", "P", "2", "");
    tree_->SetProperty(part, "G", "P", "2", "");
    tree_->SetProperty(part, "G", "P", "3", "source");
    tree_->RemoveProperty(part, "G", "P");
    tree_->RemoveProperty(part, "G", "P");
    tree_->SetDefaultPropertyGroup(part, "G");
  }
  EXPECT_EQ(recorder->log, (Log{"begin", "new P", "changed P", "changed P", "gone P", "group G", "end"}));
}

TEST_F(SbomTreeTest, ForeignOrMissingInstanceChangesNothing) {
  const auto other = zrk::MakeObject<zrk::illustration::SbomTree>();
  const Part foreign = other->CreateRoot("product", nullptr);
  const auto recorder = Observe();
  tree_->SetProperty(foreign, "G", "P", "1", "");
  tree_->SetProperty(nullptr, "G", "P", "1", "");
  tree_->RemoveInstance(foreign);
  tree_->RemoveInstance(nullptr);
  EXPECT_FALSE(tree_->AddInstance(nullptr, "x", nullptr));
  EXPECT_TRUE(recorder->log.empty());
  EXPECT_FALSE(foreign->GetProperty("G", "P"));
}

TEST_F(SbomTreeTest, ReplayTellsTheWholeContentAsOneUpdate) {
  tree_->SetProperty(AddGroup("a", root_), "G", "P", "1", "");
  AddGroup("b", root_);
  const auto recorder = zrk::MakeObject<TreeRecorder>();
  tree_->RegisterObserver(recorder, true);
  EXPECT_EQ(recorder->log, (Log{"begin", "add product", "add product/a", "new P", "add product/b", "end"}));

  recorder->log.clear();
  tree_->UnregisterObserver(recorder);
  tree_->DestroyTree();
  EXPECT_TRUE(recorder->log.empty());
  EXPECT_FALSE(tree_->GetRoot());
}

TEST_F(SbomTreeTest, PropertyLookupPrefersExactSourceThenNoSource) {
  const Part part = AddGroup("a", root_);
  tree_->SetProperty(part, "", "Mass", "plain", "");
  tree_->SetProperty(part, "", "Mass", "fine", "high");
  tree_->SetProperty(part, "", "Only", "low", "low");
  tree_->SetProperty(part, "Other", "Mass", "other", "");

  struct Case {
    const char *group, *name, *source, *expected;
  };
  for (const Case& c :
       {Case{"", "Mass", "high", "fine"}, Case{"", "Mass", "low", "plain"}, Case{"", "Mass", "", "plain"},
        Case{"Other", "Mass", "high", "other"}, Case{"", "Only", "", "low"}, Case{"", "Only", "high", nullptr},
        Case{"Other", "Only", "", nullptr}, Case{"", "mass", "", nullptr}}) {
    const auto property = part->GetProperty(c.group, c.name, c.source);
    ASSERT_EQ(static_cast<bool>(property), c.expected != nullptr) << c.group << "/" << c.name << "/" << c.source;
    if (property) {
      EXPECT_EQ(property->GetValue().GetString(), c.expected);
    }
  }
  tree_->SetDefaultPropertyGroup(part, "Other");
  EXPECT_EQ(part->GetProperty("", "Mass")->GetValue().GetString(), "other");
}

}  // namespace zrtest
