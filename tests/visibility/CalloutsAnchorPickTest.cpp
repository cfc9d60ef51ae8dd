// How anchors, hidden flags and marks follow the answers to picks, whatever their order and whoever is gone by then.
#include <algorithm>

#include <zrannotations/Inset.h>
#include <zrk/MemoryPool.h>

#include "visibility/PickFixture.h"

namespace {

using zrk::PickAnswer;
using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::PickPtr;

class CalloutsAnchorPickTest : public zrtest::PickFixture {
protected:
  /// A leader a part; all but the first are hidden.
  [[nodiscard]] CalloutPtr MakeWithSpares(const std::vector<Part>& parts) const {
    auto callout = MakeCallout(zrtest::TextTemplate("text"), parts.front());
    for (std::size_t i = 1; i < parts.size(); ++i) {
      AddLeader(callout, parts[i]);
      callout->GetLeaders().back()->SetHidden(true);
    }
    return callout;
  }
  /// A letter a leader, "-" hidden, "+" drawn, "~" dashed, with its height above its part; "dimmed" for the callout.
  [[nodiscard]] static std::string Describe(const CalloutPtr& callout) {
    std::string text;
    for (const auto& leader : callout->GetLeaders()) {
      text += leader->IsHidden() ? '-' : leader->IsOccluded() ? '~' : '+';
      const auto shapes = leader->GetShapeInstances();
      const double above = leader->GetAnchor().z - zrtest::PositionOf(**shapes.begin()).z;
      text += leader->IsAnchorCalculated() ? std::to_string(static_cast<int>(above)) : "?";
    }
    return text + (callout->IsDimmed() ? " dimmed" : "");
  }
  CalloutPtr AddNote() { return AddCallout(zrtest::TextTemplate("text"), b_); }
  static PickAnswer AnswerOf(const PickPtr& event, bool visible) {
    return visible ? zrtest::SeenAnswer(*event->GetShapeInstance(), 3) : PickAnswer();
  }

  const du::SmartPtr<zrtest::HeldPicks> held_ = HoldPicks();
  const Part a_ = structure_->AddPart(structure_->Root(), "a", {-5, 0, 0});
  const Part b_ = structure_->AddPart(structure_->Root(), "b", {0, 0, 0});
  const Part c_ = structure_->AddPart(structure_->Root(), "c", {5, 0, 0});
};

// An answer to each leader's pick: "v" visible, "h" hidden, "." dropped.
TEST_F(CalloutsAnchorPickTest, EveryOrderOfAnswersComesToTheSameAndTheCountToNothing) {
  const struct {
    std::string answers, expected;
  } cases[] = {{"vvv", "+3-3-3"}, {"hvv", "-?+3-3"}, {"hhv", "-?-?+3"}, {"hhh", "~?-?-? dimmed"},
               {".vv", "+?-3-3"}, {"h.v", "-?-?+3"}, {"...", "+?-?-?"}};
  for (const auto& [answers, expected] : cases) {
    std::string order = "012";
    do {
      const auto callout = MakeWithSpares({a_, b_, c_});
      engine_->RequestAnchorPick(callout);
      EXPECT_EQ(engine_->GetPickRequestCount(), 3u);
      auto events = held_->Take();
      for (const char digit : order) {
        const std::size_t i = digit - '0';
        if (answers[i] != '.') events[i]->Answer(AnswerOf(events[i], answers[i] == 'v'));
        events[i].Reset();
      }
      EXPECT_EQ(Describe(callout), expected) << answers << " in order " << order;
      EXPECT_EQ(engine_->GetPickRequestCount(), 0u);
    } while (std::next_permutation(order.begin(), order.end()));
  }
}

TEST_F(CalloutsAnchorPickTest, OnlyLeadersWithoutAPickedAnchorAreAskedForAtTheirPixelInViewZero) {
  const auto callout = MakeWithSpares({a_, b_});
  callout->GetLeaders()[0]->SetAnchorCalculated(true);
  engine_->RequestAnchorPick(callout);
  const auto events = held_->Take();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]->GetShapeInstance(), b_.shape);
  EXPECT_EQ(events[0]->GetView(), view_);
  EXPECT_NEAR(events[0]->GetPixel().x, 200, 1e-9);
  engine_->RequestAnchorPick(nullptr);
  EXPECT_EQ(engine_->GetPickRequestCount(), 1u);
}

TEST_F(CalloutsAnchorPickTest, AnAssemblyIsSeenWhereTheShapeWithTheMostRoomIs) {
  const auto assembly = structure_->AddAssembly(structure_->Root(), "assembly");
  const auto first = structure_->AddPart(assembly, "first", {0, 5, 0});
  const auto second = structure_->AddPart(assembly, "second", {0, -5, 0});
  const auto callout = MakeCallout(zrtest::TextTemplate("text"), Part{});
  AddAssemblyLeader(callout, assembly);
  engine_->RequestAnchorPick(callout);
  auto events = held_->Take();
  ASSERT_EQ(events.size(), 2u);
  auto roomy = AnswerOf(events[1], true);
  roomy.clearance = 2;
  events[1]->Answer(roomy);
  events[0]->Answer(AnswerOf(events[0], true));
  EXPECT_EQ(callout->GetLeaders()[0]->GetAnchor().y, -5);
}

TEST_F(CalloutsAnchorPickTest, AnAnswerToWhatHasChangedIsPassedOver) {
  for (const bool evaluation : {false, true}) {
    const auto callout = AddNote();
    const auto leader = callout->GetLeaders()[0];
    evaluation ? engine_->OnDrawWhenHidden(view_) : engine_->RequestAnchorPick(callout);
    leader->SetAnchor({7, 7, 7});  // somebody moved it
    for (const auto& event : held_->Take()) event->Answer(AnswerOf(event, true));
    EXPECT_EQ(leader->GetAnchor().x, 7);
    EXPECT_EQ(engine_->GetPickRequestCount(), 0u);
    Remove(callout);
  }
  // Of two evaluations the later one counts, although its answers come first.
  const auto callout = AddNote();
  engine_->OnDrawWhenHidden(view_);
  const auto early = held_->Take();
  engine_->OnDrawWhenHidden(view_);
  for (const auto& event : held_->Take()) event->Answer(PickAnswer());
  for (const auto& event : early) event->Answer(AnswerOf(event, true));
  EXPECT_EQ(Describe(callout), "~? dimmed");
}

TEST_F(CalloutsAnchorPickTest, TheTimerWaitsForOutstandingPicks) {
  const auto callout = AddNote();
  engine_->RequestAnchorPick(callout);
  auto events = held_->Take();
  view_->FireTimeout();
  EXPECT_TRUE(held_->Take().empty());
  events.clear();
  view_->FireTimeout();
  EXPECT_EQ(held_->Take().size(), 1u);
  view_->FireTimeout();  // the camera is where it was
  scene_->SetDrawWhenHidden(true);
  LookAlong({0, 0, 1});
  view_->FireTimeout();
  EXPECT_TRUE(held_->Take().empty());
}

TEST_F(CalloutsAnchorPickTest, NoAnswerReachesADestroyedEngine) {
  const auto callout = MakeWithSpares({a_, b_});
  engine_->RequestAnchorPick(callout);
  auto events = held_->Take();
  CloseScene();
  EXPECT_EQ(engine_->GetPickRequestCount(), 0u);
  const unsigned references = engine_->GetReferenceCount();
  for (const auto& event : events) event->Answer(AnswerOf(event, true));
  EXPECT_EQ(engine_->GetReferenceCount(), references);
  EXPECT_EQ(Describe(callout), "+?-?");
  engine_->RequestAnchorPick(callout);
  engine_->OnDrawWhenHidden(view_);
  EXPECT_TRUE(held_->Take().empty());
  EXPECT_EQ(engine_->GetPickRequestCount(), 0u);
}

TEST_F(CalloutsAnchorPickTest, APickThatCannotBeMadeCountsAsDropped) {
  const auto callout = MakeWithSpares({a_, b_, c_});
  for (unsigned made = 0; made < 3; ++made) {
    zrk::MemoryPool::FailAfter(made, 1);
    engine_->RequestAnchorPick(callout);
    EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), 1u);
    zrk::MemoryPool::FailNext(0);
    EXPECT_EQ(held_->Take().size(), 2u);
    EXPECT_EQ(engine_->GetPickRequestCount(), 0u);
  }
}

// An answer for a leader whose anchor stands at b, and where the anchor is then: 0 where it was, 1 at the pixel, 2 at
// the deepest point.
TEST_F(CalloutsAnchorPickTest, AnAnchorStaysWhileItIsGoodAndElseGoesToTheDeepestPoint) {
  using Place = PickAnswer::Place;
  const auto callout = AddNote();
  const auto leader = callout->GetLeaders()[0];
  const struct {
    Place place;
    double clearanceAtPixel;
    int expected;
  } cases[] = {{Place::SamePoint, 10, 0}, {Place::SamePoint, 7, 0},  {Place::SamePoint, 6.9, 2},
               {Place::OtherPoint, 7, 1}, {Place::OtherPoint, 6, 2}, {Place::Elsewhere, 10, 2}};
  for (const auto& tested : cases) {
    leader->SetAnchor({0, 0, 0});
    leader->SetAnchorCalculated(true);
    engine_->OnDrawWhenHidden(view_);
    const auto events = held_->Take();
    ASSERT_EQ(events.size(), 1u);
    events[0]->Answer({true, {0, 0, 2}, 10, tested.place, {0, 0, 1}, tested.clearanceAtPixel});
    EXPECT_EQ(leader->GetAnchor().z, tested.expected) << static_cast<int>(tested.place) << tested.clearanceAtPixel;
    EXPECT_TRUE(leader->IsAnchorCalculated());
  }
}

TEST_F(CalloutsAnchorPickTest, LeadersOfAnInsetShowAsFarAsTheyEndInsideIt) {
  const auto inset = zrk::MakeObject<zrannotations::Inset>();
  Add(inset);
  const auto callout = MakeWithSpares({b_});
  callout->SetInsetAtPos(inset, 0);
  Add(callout);
  const auto leader = callout->GetLeaders()[0];
  const auto hidesAndNotifies = [&](const auto& change) {
    const unsigned before = callout->GetNotifyCalloutChangedCount();
    change();
    return !leader->IsDrawn() && callout->GetNotifyCalloutChangedCount() > before;
  };
  EXPECT_TRUE(hidesAndNotifies([&] { inset->SetBounds({{3, -1, -1}, {7, 1, 1}}); }));
  Move(b_, {5, 0, 0});  // into the inset
  EXPECT_TRUE(leader->IsDrawn());
  EXPECT_TRUE(hidesAndNotifies([&] { inset->SetVisible(false); }));
  inset->SetVisible(true);
  engine_->OnDrawWhenHidden(view_);
  EXPECT_TRUE(held_->Take().empty());  // what the main view hides is nothing to it
  Remove(inset);
  const unsigned before = callout->GetNotifyCalloutChangedCount();
  inset->SetBounds({});
  EXPECT_EQ(callout->GetNotifyCalloutChangedCount(), before);
}

}  // namespace
