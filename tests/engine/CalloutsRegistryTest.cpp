// Which callouts point at an instance, which show an inset, and whose templates are observed.
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/Observer.h>

#include "engine/EngineFixture.h"

namespace {

using zrtest::CalloutPtr;
using Ids = std::set<std::string>;

class CalloutsRegistryTest : public zrtest::EngineFixture {
protected:
  using Leaders = std::vector<std::pair<std::string, std::string>>;  // shape id, assembly id

  /// A callout showing "T" whose leaders only know ids.
  template <class Kind = zrannotations::Callout>
  [[nodiscard]] static du::SmartPtr<Kind> MakeWith(const Leaders& leaders) {
    auto callout = zrk::MakeObject<Kind>();
    callout->SetText("T", false);
    for (const auto& [shapeId, assemblyId] : leaders) callout->AddUnresolvedLeader(shapeId, assemblyId);
    return callout;
  }

  [[nodiscard]] Ids Filed() const {
    Ids ids;
    for (const char* id : {"", "A", "S", "S2", "S3"}) {
      if (engine_->Exists(id, "T")) ids.insert(id);
    }
    return ids;
  }
};

TEST_F(CalloutsRegistryTest, FilesUnderTheAssemblyAndRemovesUnderTheShape) {
  const struct {
    Leaders leaders;
    Ids filed, leftAfterRemoval;
  } cases[] = {
      {{}, {}, {}},
      {{{"S", ""}}, {"S"}, {}},
      {{{"", "A"}}, {"A"}, {}},
      {{{"", ""}}, {""}, {}},
      {{{"S", ""}, {"S", ""}}, {"S"}, {}},
      {{{"S", ""}, {"S2", ""}}, {"S", "S2"}, {}},
      {{{"S", "A"}}, {"A"}, {"A"}},  // the last one, since it stays
  };
  for (const auto& tested : cases) {
    const auto callout = MakeWith(tested.leaders);
    engine_->AddToMap(callout);
    engine_->AddToMap(callout);
    EXPECT_EQ(Filed(), tested.filed);
    engine_->OnRemoveAnnotation(callout);
    EXPECT_EQ(Filed(), tested.leftAfterRemoval);
  }
}

TEST_F(CalloutsRegistryTest, ExistsComparesTheWholeTextOfCalloutsStillThere) {
  const auto first = MakeWith({{"S", ""}});
  const auto second = MakeWith({{"S", ""}});
  second->SetText("", false);
  engine_->AddToMap(first);
  EXPECT_TRUE(engine_->Exists("S", "T"));
  for (const char* other : {"t", "T ", ""}) EXPECT_FALSE(engine_->Exists("S", other));
  EXPECT_FALSE(engine_->Exists("X", "T"));
  engine_->AddToMap(second);
  engine_->OnRemoveAnnotation(first);
  EXPECT_FALSE(engine_->Exists("S", "T"));
  EXPECT_TRUE(engine_->Exists("S", ""));
}

TEST_F(CalloutsRegistryTest, ACombinedCalloutStandsForItsFirstMember) {
  const auto combined = MakeWith<zrannotations::CombinedCallout>({{"A", ""}});
  for (const char* id : {"S", "S2", "S3"}) combined->AddMember(MakeWith({{id, ""}}));
  engine_->AddToMap(combined);
  EXPECT_EQ(Filed(), (Ids{"A", "S2", "S3"}));
  engine_->OnRemoveAnnotation(combined);
  EXPECT_EQ(Filed(), Ids());

  const auto empty = zrk::MakeObject<zrannotations::CombinedCallout>();
  engine_->AddToMap(empty);
  engine_->OnRemoveAnnotation(empty);
}

TEST_F(CalloutsRegistryTest, ACustomCalloutIsObservedWithoutItsTemplate) {
  for (const bool custom : {false, true}) {
    const auto callout = MakeNumber(bolt_);
    callout->SetCustom(custom);
    engine_->AddToSet(callout);
    EXPECT_TRUE(IsObserved(callout));
    EXPECT_EQ(callout->HasTemplateObserver(), !custom);
  }
}

TEST_F(CalloutsRegistryTest, KnownInsetsHearOfTheirCalloutsAlsoWhenRemovedAndNotOfRemovals) {
  const auto known = zrk::MakeObject<zrannotations::Inset>();
  known->RegisterTemplateObserver(zrk::MakeObject<zrk::Observer>());
  const auto stranger = zrk::MakeObject<zrannotations::Inset>();
  const auto callout = MakeNumber(bolt_);
  AddLeader(callout, bolt_);
  callout->SetInsetAtPos(known, 0);
  callout->SetInsetAtPos(stranger, 1);
  Add(known);
  engine_->AddToMap(callout);
  EXPECT_TRUE(stranger->GetShownCallouts().empty());
  engine_->OnRemoveAnnotation(callout);
  EXPECT_EQ(known->GetShownCallouts(), std::set<CalloutPtr>{callout});

  Remove(known);
  EXPECT_EQ(known->GetObserverCount(), 0u);
  EXPECT_TRUE(known->IsReleased());
  EXPECT_FALSE(known->HasTemplateObserver());
  const auto next = MakeNumber(bolt_);
  next->SetInsetAtPos(known, 0);
  engine_->AddToMap(next);
  EXPECT_EQ(known->GetShownCallouts(), std::set<CalloutPtr>{next});  // the removed one is out of the entry
}

TEST_F(CalloutsRegistryTest, EmptyPointersAreIgnored) {
  engine_->AddToMap(nullptr);
  engine_->AddToSet(nullptr);
  std::set<CalloutPtr> callouts = {MakeNumber(bolt_)};
  engine_->GetCalloutSetForSbomInstance(nullptr, callouts);
  EXPECT_TRUE(callouts.empty());
}

}  // namespace
