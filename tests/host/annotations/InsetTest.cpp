#include <zrannotations/Inset.h>

#include <zrannotations/InsetObserver.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::Inset;
using InsetPtr = du::SmartPtr<Inset>;

struct RecordingObserver final : zrannotations::InsetObserver {
  void OnInsetBoundsChanged(const InsetPtr& inset) override {
    events.push_back("bounds");
    // Leaving during a notification must neither wait nor disturb the walk.
    if (leaves) inset->UnregisterObserver(du::SmartPtr<InsetObserver>(this));
  }
  void OnInsetCaptionChanged(const InsetPtr&) override { events.push_back("caption"); }
  void OnInsetVisibilityChanged(const InsetPtr&, bool visible) override {
    events.push_back(visible ? "shown" : "hidden");
  }
  Log events;
  bool leaves = false;
};

class InsetTest : public AnnotationFixture {
protected:
  const InsetPtr inset_ = MakeObject<Inset>();
};

TEST_F(InsetTest, TellsItsObserversUntilTheyLeave) {
  const auto first = MakeObject<RecordingObserver>(), second = MakeObject<RecordingObserver>();
  first->leaves = true;
  for (const auto& observer : {first, second, first}) inset_->RegisterObserver(observer);
  inset_->SetVisible(true);
  inset_->SetVisible(false);
  inset_->SetBounds(MakeBox(2));
  inset_->SetCaptionText("Detail A", false, true);
  EXPECT_EQ(first->events, Log({"hidden", "bounds"}));
  EXPECT_EQ(second->events, Log({"hidden", "bounds", "caption"}));
  EXPECT_EQ(inset_->GetObserverCount(), 1u);
}

TEST_F(InsetTest, CaptionFollowsTheRulesOfLocalisation) {
  inset_->SetCaptionText("Detail", false, false);
  EXPECT_TRUE(inset_->GetLocalizableString().IsEmpty());
  inset_->SetupLocalizationIfNecessary();
  inset_->SetCaptionText("Einzelheit", false, true);
  EXPECT_EQ(inset_->GetLocalizableString().GetSourceText(), du::Symbol("Detail"));
  inset_->SetCaptionText("Section", false, false);
  EXPECT_EQ(inset_->GetLocalizableString().GetSourceText(), du::Symbol("Section"));
}

TEST_F(InsetTest, TakesUpItsTemplateAgainWhenItReturnsToASet) {
  inset_->ReleaseInsetTemplate();
  inset_->ReleaseInsetTemplate();
  EXPECT_TRUE(inset_->IsReleased());
  inset_->RegisterTemplateObserver(MakeObject<RecordingObserver>());
  EXPECT_TRUE(inset_->HasTemplateObserver());
  inset_->UnregisterTemplateObserver();
  inset_->UnregisterTemplateObserver();
  EXPECT_FALSE(inset_->HasTemplateObserver());
  set_->AddAnnotationToSet(inset_, nullptr);
  EXPECT_FALSE(inset_->IsReleased());
}

TEST_F(InsetTest, BoundsDecideWhichLeadersAreDrawnAndWhichCalloutsAccepted) {
  const CalloutPtr callout = MakeCallout(housing_);
  AddLeader(callout, gear_, dg::DPoint3D(0, 30, 0));
  callout->SetInsetAtPos(inset_, 0);
  EXPECT_FALSE(inset_->AcceptsCallout(nullptr));
  EXPECT_TRUE(inset_->AcceptsCallout(callout)) << "no bounds";
  inset_->SetBounds(MakeBox(2));
  EXPECT_FALSE(inset_->AcceptsCallout(callout));
  callout->SetVisibleWithinInsetBounds(nullptr);
  EXPECT_EQ(Drawn(callout), "++");
  callout->SetVisibleWithinInsetBounds(inset_);
  EXPECT_EQ(Drawn(callout), "-+") << "shown outside the inset";
  inset_->SetBounds(MakeBox(20));
  callout->SetVisibleWithinInsetBounds(inset_);
  EXPECT_EQ(Drawn(callout), "++") << "the border belongs to the inset";
  EXPECT_TRUE(inset_->AcceptsCallout(callout));
  inset_->SetBounds(MakeBox(2));
  callout->SetVisibleWithinInsetBounds(inset_);
  callout->SetInsetAtPos(nullptr, 0);
  EXPECT_EQ(Drawn(callout), "++");
}

}  // namespace zrtest
