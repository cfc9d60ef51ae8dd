#include <zrk/illustration/SbomTree.h>

#include <zrk/Observable.h>
#include <zrk/Property.h>

#include "../HostFixture.h"

namespace zrtest {

class SbomTreeTest : public HostFixture {};

TEST_F(SbomTreeTest, IdsStayUniqueWhenNamesRepeatOrLookLikeIds) {
  const std::pair<std::string, std::string> siblings[] = {
      {"bolt", "product/bolt"},  {"bolt#2", "product/bolt#2"}, {"bolt", "product/bolt#3"}, {"", "product/unnamed"},
      {"", "product/unnamed#2"}, {"a/b", "product/a|b"},       {"a|b", "product/a|b#2"}};
  for (const auto& [name, id] : siblings) {
    const PartPtr part = AddGroup(name, root_);
    EXPECT_EQ(part->GetId().GetString(), id);
    EXPECT_EQ(tree_->FindInstance(id), part);
  }
  tree_->RemoveInstance(tree_->FindInstance("product/bolt#3"));
  EXPECT_EQ(AddGroup("bolt", root_)->GetId().GetString(), "product/bolt#4") << "a removed id is not given again";
}

TEST_F(SbomTreeTest, RemovedPartOfStructureIsGoneFromTreeAndWeld) {
  const PartPtr weld = AddGroup("frame", root_), group = AddGroup("group", weld), leaf = AddGroup("leaf", group);
  weld->SetWeld(true);
  EXPECT_TRUE(leaf->GetTopWeld() == weld && leaf->IsWeldMember());
  tree_->RemoveInstance(group);
  EXPECT_FALSE(weld->HasChildren() || group->GetParent() || leaf->GetTopWeld() || leaf->IsWeldMember());
  EXPECT_FALSE(tree_->FindInstance("product/frame/group/leaf"));
  EXPECT_FALSE(tree_->AddInstance(group, "late", nullptr)) << "group is in no tree";
}

TEST_F(SbomTreeTest, SingleChangeIsWrappedOpenUpdateIsNotAndForeignInstanceChangesNothing) {
  const auto recorder = MakeObject<Recorder>();
  tree_->RegisterObserver(recorder, false);
  const PartPtr part = AddGroup("a", root_);
  EXPECT_EQ(std::exchange(recorder->log, {}), (Log{"begin", "add product/a", "end"}));
  {
    const zrk::Observable::UpdateGroup outer(*tree_);
    const zrk::Observable::UpdateGroup inner(*tree_);
    for (const char* value : {"1", "2", "2"}) tree_->SetProperty(part, "G", "P", value, "");
    tree_->SetProperty(part, "G", "P", "3", "source");
    for (int i = 0; i < 2; ++i) tree_->RemoveProperty(part, "G", "P");
    tree_->SetDefaultPropertyGroup(part, "G");
  }
  EXPECT_EQ(std::exchange(recorder->log, {}),
            (Log{"begin", "new P", "changed P", "changed P", "gone P", "group G", "end"}));

  const auto other = MakeObject<zrk::illustration::SbomTree>();
  for (const PartPtr& foreign : {other->CreateRoot("product", nullptr), PartPtr()}) {
    tree_->SetProperty(foreign, "G", "P", "1", "");
    tree_->RemoveInstance(foreign);
  }
  EXPECT_FALSE(tree_->AddInstance(nullptr, "x", nullptr));
  EXPECT_TRUE(recorder->log.empty());

  tree_->SetProperty(part, "G", "P", "1", "");
  const auto late = MakeObject<Recorder>();
  tree_->RegisterObserver(late, true);
  EXPECT_EQ(late->log, (Log{"begin", "add product", "add product/a", "new P", "end"})) << "the whole content";
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
