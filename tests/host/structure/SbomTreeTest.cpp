#include <zrk/illustration/SbomTree.h>

#include <zrk/Observable.h>
#include <zrk/Property.h>

#include "StructureFixture.h"

namespace zrtest {

using zrk::Observable;

class SbomTreeTest : public StructureTest {
protected:
  du::SmartPtr<Recorder> Observe() {
    const auto recorder = MakeObject<Recorder>();
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
    const PartPtr part = AddGroup(name, root_);
    EXPECT_EQ(part->GetId().GetString(), id);
    EXPECT_EQ(part->GetName(), name);
    EXPECT_EQ(tree_->FindInstance(id), part);
  }
  tree_->RemoveInstance(tree_->FindInstance("product/bolt#4"));
  EXPECT_EQ(AddGroup("bolt", root_)->GetId().GetString(), "product/bolt#5") << "a removed id is not given again";
}

TEST_F(SbomTreeTest, RemovedPartOfStructureIsGoneFromTreeAndWeld) {
  const PartPtr weld = AddGroup("frame", root_);
  weld->SetWeld(true);
  const PartPtr group = AddGroup("group", weld);
  const PartPtr leaf = AddGroup("leaf", group);
  ASSERT_TRUE(leaf->IsWeldMember());

  tree_->RemoveInstance(group);
  EXPECT_FALSE(weld->HasChildren());
  EXPECT_FALSE(group->GetParent());
  EXPECT_FALSE(tree_->FindInstance("product/frame/group/leaf"));
  EXPECT_FALSE(leaf->IsWeldMember());
  EXPECT_FALSE(leaf->GetTopWeld());
  EXPECT_FALSE(tree_->AddInstance(group, "late", nullptr)) << "group is in no tree";
  const auto other = MakeObject<zrk::illustration::SbomTree>();
  const PartPtr child = other->AddInstance(other->CreateRoot("other", nullptr), "child", nullptr);
  other->DestroyTree();
  EXPECT_FALSE(child->GetParent());
}

TEST_F(SbomTreeTest, WeldQueriesFollowSetWeldAtEveryLevel) {
  const PartPtr outer = AddGroup("outer", root_);
  const PartPtr inner = AddGroup("inner", outer);
  const PartPtr plate = AddPart(MakeNode("plate"), inner);
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
}

TEST_F(SbomTreeTest, EngineeringInstancesAreThoseOfThePartsBelow) {
  const NodePtr node = MakeNode("plate");
  const PartPtr group = AddPart(node), plate = AddPart(node, group), nested = AddPart(node, AddGroup("nested", group));
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
  const PartPtr part = AddGroup("a", root_);
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
  const auto other = MakeObject<zrk::illustration::SbomTree>();
  const PartPtr foreign = other->CreateRoot("product", nullptr);
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
  const auto recorder = MakeObject<Recorder>();
  tree_->RegisterObserver(recorder, true);
  EXPECT_EQ(recorder->log, (Log{"begin", "add product", "add product/a", "new P", "add product/b", "end"}));

  recorder->log.clear();
  tree_->UnregisterObserver(recorder);
  tree_->DestroyTree();
  EXPECT_TRUE(recorder->log.empty());
  EXPECT_FALSE(tree_->GetRoot());
}

TEST_F(SbomTreeTest, PropertyLookupPrefersExactSourceThenNoSource) {
  const PartPtr part = AddGroup("a", root_);
  tree_->SetProperty(part, "", "Mass", "plain", "");
  tree_->SetProperty(part, "", "Mass", "fine", "high");
  tree_->SetProperty(part, "", "Only", "low", "low");
  tree_->SetProperty(part, "Other", "Mass", "other", "");

  struct Case {
    const char *group, *name, *source, *expected;
  };
  for (const Case& c :
       {Case{"", "Mass", "high", "fine"}, Case{"", "Mass", "low", "plain"}, Case{"", "Mass", "", "plain"},
        Case{"Other", "Mass", "high", "other"}, Case{"", "Only", "", "low"}, Case{"", "Only", "high", "none"},
        Case{"Other", "Only", "", "none"}, Case{"", "mass", "", "none"}}) {
    const auto property = part->GetProperty(c.group, c.name, c.source);
    EXPECT_EQ(property ? property->GetValue().GetString() : "none", c.expected) << c.group << c.name << c.source;
  }
  tree_->SetDefaultPropertyGroup(part, "Other");
  EXPECT_EQ(part->GetProperty("", "Mass")->GetValue().GetString(), "other");
}

}  // namespace zrtest
