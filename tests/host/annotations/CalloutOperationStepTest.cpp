#include <zrannotations/CalloutOperationStep.h>

#include <zrannotations/CalloutSnapshot.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::CalloutSnapshot;

struct MaskedStep final : zrannotations::CalloutOperationStep {
  MaskedStep(const CalloutPtr& callout, std::int32_t mask) : CalloutOperationStep(callout) { m_state = mask; }
};

class CalloutOperationStepTest : public AnnotationFixture {
protected:
  /// Every aspect in one line, so that a wrong one shows.
  [[nodiscard]] Log Describe() const {
    std::uint32_t itemId = 0;
    static_cast<void>(callout_->GetItemId(itemId));
    std::string leaders;
    for (const auto& leader : callout_->GetLeaders()) leaders += leader->IsDrawn() ? '+' : '-';
    return {callout_->GetDefinition() == first_ ? "first" : "second", callout_->GetText(false).GetString(),
            std::to_string(callout_->GetPosition().x), std::to_string(itemId), leaders};
  }

  const TemplatePtr first_ = MakeTemplate();
  const CalloutPtr callout_ = MakeCallout(housing_);
};

TEST_F(CalloutOperationStepTest, RestoresTheAspectsOfItsMask) {
  callout_->UpdateDefinition(first_);
  callout_->SetText("old", false);
  callout_->SetLabelPosition({1, 0, 0});
  callout_->SetItemId(3);
  std::vector<du::SmartPtr<MaskedStep>> steps;
  const std::int32_t masks[] = {CalloutSnapshot::Definition, CalloutSnapshot::Text, CalloutSnapshot::LabelPosition,
                                CalloutSnapshot::ItemId, CalloutSnapshot::Leaders};
  for (const std::int32_t mask : masks) steps.push_back(MakeObject<MaskedStep>(callout_, mask));
  const Log before = Describe();
  steps[1]->Redo();
  EXPECT_EQ(Describe(), before) << "nothing to make again before an undo";

  callout_->UpdateDefinition(MakeTemplate());
  callout_->SetText("new", false);
  callout_->SetLabelPosition({2, 0, 0});
  callout_->ClearItemId();
  callout_->GetLeaders().front()->SetHidden(true);
  callout_->ConnectLeader(callout_->CreateCalloutLeader({}, gear_));
  const Log changed = Describe();
  for (std::size_t aspect = 0; aspect < steps.size(); ++aspect) {
    SCOPED_TRACE(aspect);
    Log expected = changed;
    EXPECT_NE(changed[aspect], before[aspect]);
    expected[aspect] = before[aspect];
    steps[aspect]->Undo();
    EXPECT_EQ(Describe(), expected);
    steps[aspect]->Redo();
    EXPECT_EQ(Describe(), changed);
  }
}

TEST_F(CalloutOperationStepTest, RestoredTextKeepsTheRecordAndItsTranslations) {
  callout_->SetText("bolt", false);
  callout_->SetupLocalizationIfNecessary(true);
  const CalloutSnapshot before = callout_->TakeSnapshot();
  callout_->SetText("screw", false);
  const du::LocalizableString record = callout_->GetLocalizableString();
  callout_->RestoreSnapshot(before, CalloutSnapshot::AllAspects);
  EXPECT_TRUE(callout_->GetLocalizableString().IsSameRecord(record));
  EXPECT_EQ(record.GetSourceText(), du::Symbol("bolt"));
}

TEST_F(CalloutOperationStepTest, ALanguageDecidesTheTextOnlyWhereItDidBefore) {
  callout_->SetText("1", false);
  const auto step = MakeObject<zrannotations::CalloutOperationStep>(callout_);
  callout_->SetText("Note", false);
  callout_->SetupLocalizationIfNecessary(false);
  step->Undo();
  EXPECT_FALSE(callout_->GetLocalizableString().IsEnabled());
  step->Redo();
  EXPECT_EQ(callout_->GetLocalizableString().GetSourceText(), du::Symbol("Note"));
}

}  // namespace zrtest
