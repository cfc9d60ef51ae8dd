// Whether a generated callout may join the callouts that are there.
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>

#include "engine/EngineFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;

constexpr std::uint32_t kNoItem = 0;

struct Side {
  bool needsItems = true;
  bool kit = false;
  std::uint32_t itemId = 7;
  bool inInset = false;
};

class CalloutsAdmissionTest : public zrtest::EngineFixture {
protected:
  CalloutPtr Make(const Side& side, const Part& part) {
    auto callout = side.needsItems ? MakeNumber(part, side.itemId) : MakeNote(part);
    callout->SetKit(side.kit);
    if (side.inInset) callout->SetInsetAtPos(inset_, 0);
    return callout;
  }

  const du::SmartPtr<zrannotations::Inset> inset_ = zrk::MakeObject<zrannotations::Inset>();
};

TEST_F(CalloutsAdmissionTest, RefusesASecondCalloutOfTheItemInOnePlace) {
  const struct {
    const char* name;
    Side present, candidate;
    bool allowed;
  } cases[] = {
      {"same item", {}, {}, false},
      {"other item", {}, {.itemId = 8}, true},
      {"candidate without item", {}, {.itemId = kNoItem}, false},
      {"present without item", {.itemId = kNoItem}, {}, false},
      {"candidate needs no items", {}, {.needsItems = false}, true},
      {"present needs no items", {.needsItems = false}, {}, true},
      {"candidate is a kit", {}, {.kit = true}, true},
      {"present is a kit", {.kit = true}, {}, true},
      {"candidate in the inset", {}, {.inInset = true}, true},
      {"present in the inset", {.inInset = true}, {}, true},
      {"both in the inset", {.inInset = true}, {.inInset = true}, false},
  };
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.name);
    const auto present = Make(tested.present, bolt_);
    engine_->AddToMap(present);
    EXPECT_EQ(engine_->IsAllowed(Make(tested.candidate, bolt_)), tested.allowed);
    EXPECT_TRUE(engine_->IsAllowed(Make(tested.candidate, nut_)));
    EXPECT_EQ(CalloutsOn(bolt_).size(), 1u);  // asking changes nothing
    engine_->OnRemoveAnnotation(present);
  }
}

TEST_F(CalloutsAdmissionTest, NothingIsNotAllowedAndWithoutRivalsEverythingIs) {
  EXPECT_FALSE(engine_->IsAllowed(nullptr));
  const auto callout = Make({}, bolt_);
  engine_->AddToMap(callout);
  EXPECT_TRUE(engine_->IsAllowed(callout));  // it is no rival of itself
  EXPECT_TRUE(engine_->IsAllowed(Make({}, Part{})));
  EXPECT_TRUE(engine_->IsAllowed(zrk::MakeObject<zrannotations::Callout>()));

  const zrtest::EnginePtr withoutList(new zrcallouts::Callouts);
  withoutList->AddToMap(callout);
  EXPECT_TRUE(withoutList->IsAllowed(Make({}, bolt_)));
}

TEST_F(CalloutsAdmissionTest, AnyLeaderOnAPartMayCollideButNoneOnAnAssembly) {
  const Part frame = structure_->AddAssembly(structure_->Root(), "frame");
  structure_->AddPart(frame, "beam");
  const auto present = Make({}, nut_);
  AddLeader(present, bolt_);
  AddAssemblyLeader(present, frame);
  engine_->AddToMap(present);
  ASSERT_EQ(CalloutsOn(frame).size(), 1u);
  const auto candidate = Make({}, structure_->AddPart(structure_->Root(), "washer"));
  AddAssemblyLeader(candidate, frame);
  EXPECT_TRUE(engine_->IsAllowed(candidate));
  AddLeader(candidate, bolt_);
  candidate->GetLeaders().back()->SetHidden(true);
  EXPECT_FALSE(engine_->IsAllowed(candidate));
}

}  // namespace
