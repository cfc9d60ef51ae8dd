// Whether a generated callout may join the callouts that are there.
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::SceneFixture;

constexpr std::uint32_t kNoItem = 0;

struct Side {
  bool needsItems = true;
  bool kit = false;
  std::uint32_t itemId = 7;
  bool inInset = false;
};

struct AdmissionCase {
  const char* name;
  Side present;
  Side candidate;
  bool allowed;
  bool otherPart = false;
};

class CalloutsAdmissionTest : public SceneFixture {
protected:
  CalloutsAdmissionTest() = default;
  explicit CalloutsAdmissionTest(const zrtest::SceneOptions& options) : SceneFixture(options) {}

  CalloutPtr Make(const Side& side, const Part& part) {
    const auto callouttemplate = side.needsItems ? zrtest::NumberTemplate() : zrtest::TextTemplate("Note");
    auto callout = MakeCallout(callouttemplate, part, side.itemId);
    callout->SetKit(side.kit);
    if (side.inInset) callout->SetInsetAtPos(inset_, 0);
    return callout;
  }

  du::SmartPtr<zrannotations::Inset> inset_ = zrk::MakeObject<zrannotations::Inset>();
  Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  Part nut_ = structure_->AddPart(structure_->Root(), "nut");
};

class AdmissionTableTest : public CalloutsAdmissionTest, public ::testing::WithParamInterface<AdmissionCase> {};

TEST_P(AdmissionTableTest, RefusesASecondCalloutOfTheItemInOnePlace) {
  engine_->AddToMap(Make(GetParam().present, bolt_));
  const auto candidate = Make(GetParam().candidate, GetParam().otherPart ? nut_ : bolt_);
  EXPECT_EQ(engine_->IsAllowed(candidate), GetParam().allowed);
  EXPECT_EQ(CalloutsOn(bolt_).size(), 1u);  // asking changes nothing
}

INSTANTIATE_TEST_SUITE_P(Pairs, AdmissionTableTest,
                         ::testing::Values(AdmissionCase{"SameItem", {}, {}, false},
                                           AdmissionCase{"OtherItem", {}, {.itemId = 8}, true},
                                           AdmissionCase{"CandidateWithoutItem", {}, {.itemId = kNoItem}, false},
                                           AdmissionCase{"PresentWithoutItem", {.itemId = kNoItem}, {}, false},
                                           AdmissionCase{"CandidateNeedsNoItems", {}, {.needsItems = false}, true},
                                           AdmissionCase{"PresentNeedsNoItems", {.needsItems = false}, {}, true},
                                           AdmissionCase{"CandidateIsKit", {}, {.kit = true}, true},
                                           AdmissionCase{"PresentIsKit", {.kit = true}, {}, true},
                                           AdmissionCase{"CandidateInInset", {}, {.inInset = true}, true},
                                           AdmissionCase{"PresentInInset", {.inInset = true}, {}, true},
                                           AdmissionCase{"BothInInset", {.inInset = true}, {.inInset = true}, false},
                                           AdmissionCase{"OtherPart", {}, {}, true, true}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(CalloutsAdmissionTest, NothingIsNotAllowedAndALonelyCalloutIs) {
  EXPECT_FALSE(engine_->IsAllowed(nullptr));
  const auto callout = Make({}, bolt_);
  engine_->AddToMap(callout);
  EXPECT_TRUE(engine_->IsAllowed(callout));  // it is no rival of itself
  EXPECT_TRUE(engine_->IsAllowed(Make({}, Part{})));
  EXPECT_TRUE(engine_->IsAllowed(zrk::MakeObject<zrannotations::Callout>()));
}

TEST_F(CalloutsAdmissionTest, AnyLeaderOfEitherCalloutMayCollide) {
  const auto present = Make({}, nut_);
  AddLeader(present, bolt_);
  engine_->AddToMap(present);
  const auto candidate = Make({}, structure_->AddPart(structure_->Root(), "washer"));
  EXPECT_TRUE(engine_->IsAllowed(candidate));
  AddLeader(candidate, bolt_);
  candidate->GetLeaders()[1]->SetHidden(true);
  EXPECT_FALSE(engine_->IsAllowed(candidate));
}

TEST_F(CalloutsAdmissionTest, CalloutsFiledUnderAnAssemblyAreNotFound) {
  const Part frame = structure_->AddAssembly(structure_->Root(), "frame");
  structure_->AddPart(frame, "beam");
  const auto present = Make({}, Part{});
  AddAssemblyLeader(present, frame);
  engine_->AddToMap(present);
  ASSERT_EQ(CalloutsOn(frame).size(), 1u);
  const auto candidate = Make({}, Part{});
  AddAssemblyLeader(candidate, frame);
  EXPECT_TRUE(engine_->IsAllowed(candidate));
}

class AdmissionWithoutListTest : public CalloutsAdmissionTest {
protected:
  AdmissionWithoutListTest() : CalloutsAdmissionTest({.withItemList = false}) {}
};

TEST_F(AdmissionWithoutListTest, EverythingIsAllowed) {
  engine_->AddToMap(Make({}, bolt_));
  EXPECT_TRUE(engine_->IsAllowed(Make({}, bolt_)));
}

}  // namespace
