// Which callouts point at an instance, which show an inset, and whose templates are observed.
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::CombinedPtr;
using zrtest::Part;
using zrtest::SceneFixture;

class CalloutsRegistryTest : public SceneFixture {
protected:
  /// A callout showing "T" whose leaders only know ids.
  [[nodiscard]] CalloutPtr CalloutWithLeaders(const std::vector<std::pair<std::string, std::string>>& leaders) const {
    auto callout = zrk::MakeObject<zrannotations::Callout>();
    callout->SetText("T", false);
    for (const auto& [shapeId, assemblyId] : leaders) callout->AddUnresolvedLeader(shapeId, assemblyId);
    return callout;
  }

  [[nodiscard]] std::set<std::string> FiledUnder(const std::vector<std::string>& candidates) const {
    std::set<std::string> ids;
    for (const auto& id : candidates) {
      if (engine_->Exists(id, "T")) ids.insert(id);
    }
    return ids;
  }

  Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
};

struct LeaderCase {
  const char* name;
  std::vector<std::pair<std::string, std::string>> leaders;  // shape id, assembly id
  std::set<std::string> filed;
  std::set<std::string> leftAfterRemoval;
};

class LeaderIdsTest : public CalloutsRegistryTest, public ::testing::WithParamInterface<LeaderCase> {};

TEST_P(LeaderIdsTest, FilesUnderTheAssemblyAndRemovesUnderTheShape) {
  const std::vector<std::string> ids = {"", "A", "S", "S2"};
  const auto callout = CalloutWithLeaders(GetParam().leaders);
  engine_->AddToMap(callout);
  engine_->AddToMap(callout);
  EXPECT_EQ(FiledUnder(ids), GetParam().filed);
  engine_->OnRemoveAnnotation(callout);
  EXPECT_EQ(FiledUnder(ids), GetParam().leftAfterRemoval);
}

INSTANTIATE_TEST_SUITE_P(Leaders, LeaderIdsTest,
                         ::testing::Values(LeaderCase{"None", {}, {}, {}}, LeaderCase{"Shape", {{"S", ""}}, {"S"}, {}},
                                           LeaderCase{"Assembly", {{"", "A"}}, {"A"}, {}},
                                           LeaderCase{"BothIdsStayUnderTheAssembly", {{"S", "A"}}, {"A"}, {"A"}},
                                           LeaderCase{"NeitherId", {{"", ""}}, {""}, {}},
                                           LeaderCase{"TwoOnOnePart", {{"S", ""}, {"S", ""}}, {"S"}, {}},
                                           LeaderCase{"TwoParts", {{"S", ""}, {"S2", ""}}, {"S", "S2"}, {}}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(CalloutsRegistryTest, ExistsComparesTheWholeTextOfCalloutsStillThere) {
  const auto first = CalloutWithLeaders({{"S", ""}});
  const auto second = CalloutWithLeaders({{"S", ""}});
  second->SetText("", false);
  engine_->AddToMap(first);
  EXPECT_TRUE(engine_->Exists("S", "T"));
  EXPECT_FALSE(engine_->Exists("S", "t"));
  EXPECT_FALSE(engine_->Exists("S", "T "));
  EXPECT_FALSE(engine_->Exists("S", ""));
  EXPECT_FALSE(engine_->Exists("X", "T"));
  engine_->AddToMap(second);
  EXPECT_TRUE(engine_->Exists("S", ""));
  engine_->OnRemoveAnnotation(first);
  EXPECT_FALSE(engine_->Exists("S", "T"));
  EXPECT_TRUE(engine_->Exists("S", ""));
}

TEST_F(CalloutsRegistryTest, ACombinedCalloutStandsForItsFirstMember) {
  const auto combined = zrk::MakeObject<zrannotations::CombinedCallout>();
  combined->SetText("T", false);
  combined->AddUnresolvedLeader("own", "");
  for (const char* id : {"m0", "m1", "m2"}) combined->AddMember(CalloutWithLeaders({{id, ""}}));
  const std::vector<std::string> ids = {"own", "m0", "m1", "m2"};
  engine_->AddToMap(combined);
  EXPECT_EQ(FiledUnder(ids), (std::set<std::string>{"own", "m1", "m2"}));
  engine_->OnRemoveAnnotation(combined);
  EXPECT_TRUE(FiledUnder(ids).empty());

  const auto empty = zrk::MakeObject<zrannotations::CombinedCallout>();
  engine_->AddToMap(empty);
  engine_->OnRemoveAnnotation(empty);
}

TEST_F(CalloutsRegistryTest, ACustomCalloutIsObservedWithoutItsTemplate) {
  const auto ordinary = MakeCallout(zrtest::NumberTemplate(), bolt_);
  const auto custom = MakeCallout(zrtest::NumberTemplate(), bolt_);
  custom->SetCustom(true);
  for (const auto& callout : {ordinary, custom}) engine_->AddToSet(callout);
  EXPECT_TRUE(IsObserved(ordinary));
  EXPECT_TRUE(ordinary->HasTemplateObserver());
  EXPECT_TRUE(IsObserved(custom));
  EXPECT_FALSE(custom->HasTemplateObserver());
}

TEST_F(CalloutsRegistryTest, OnlyKnownInsetsHearOfTheirCalloutsAndNotOfRemovals) {
  const auto known = zrk::MakeObject<zrannotations::Inset>();
  const auto stranger = zrk::MakeObject<zrannotations::Inset>();
  const auto callout = MakeCallout(zrtest::NumberTemplate(), bolt_);
  AddLeader(callout, bolt_);
  callout->SetInsetAtPos(known, 0);
  callout->SetInsetAtPos(stranger, 1);
  engine_->OnAddAnnotation(known);
  engine_->AddToMap(callout);
  EXPECT_EQ(known->GetShownCallouts(), std::set<CalloutPtr>{callout});
  EXPECT_TRUE(stranger->GetShownCallouts().empty());
  engine_->OnRemoveAnnotation(callout);
  EXPECT_EQ(known->GetShownCallouts(), std::set<CalloutPtr>{callout});

  const auto next = MakeCallout(zrtest::NumberTemplate(), bolt_);
  next->SetInsetAtPos(known, 0);
  engine_->AddToMap(next);
  EXPECT_EQ(known->GetShownCallouts(), std::set<CalloutPtr>{next});  // the removed one is out of the entry
}

TEST_F(CalloutsRegistryTest, EmptyPointersAreIgnored) {
  engine_->AddToMap(nullptr);
  engine_->AddToSet(nullptr);
  engine_->OnAddAnnotation(nullptr);
  engine_->OnRemoveAnnotation(nullptr);
  std::set<CalloutPtr> callouts = {MakeCallout(zrtest::NumberTemplate(), bolt_)};
  engine_->GetCalloutSetForSbomInstance(nullptr, callouts);
  EXPECT_TRUE(callouts.empty());
}

}  // namespace
