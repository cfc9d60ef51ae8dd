#include <zrannotations/CalloutOperationStep.h>

#include <zrannotations/CalloutSnapshot.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrannotations::CalloutSnapshot;

struct MaskedStep final : zrannotations::CalloutOperationStep {
  MaskedStep(const CalloutPtr& callout, std::int32_t mask) : CalloutOperationStep(callout) { m_state = mask; }
};

class CalloutOperationStepTest : public AnnotationFixture, public ::testing::WithParamInterface<std::int32_t> {
protected:
  /// Every aspect in one line, so that a wrong one shows.
  [[nodiscard]] std::string Describe(const CalloutPtr& callout) const {
    std::string text = (callout->GetDefinition() == first_ ? "first" : "second") + std::string("|");
    text += callout->GetText(false).GetString() + "|" + std::to_string(callout->GetPosition().x) + "|";
    std::uint32_t itemId = 0;
    text += std::to_string(callout->GetItemId(itemId) ? itemId : 0) + "|";
    return text + Drawn(callout);
  }

  const TemplatePtr first_ = MakeTemplate("item");
};

TEST_P(CalloutOperationStepTest, RestoresTheAspectsOfItsMask) {
  const std::int32_t mask = GetParam();
  const CalloutPtr callout = MakeCallout(housing_);
  callout->UpdateDefinition(first_);
  callout->SetText("old", false);
  callout->SetLabelPosition({1, 0, 0});
  callout->SetItemId(3);
  const auto step = MakeObject<MaskedStep>(callout, mask);
  step->Redo();
  EXPECT_EQ(Describe(callout), "first|old|1.000000|3|+") << "nothing to make again before an undo";

  callout->UpdateDefinition(MakeTemplate("literal"));
  callout->SetText("new", false);
  callout->SetLabelPosition({2, 0, 0});
  callout->ClearItemId();
  callout->GetLeaders().front()->SetHidden(true);
  AddLeader(callout, gear_);
  const std::string changed = Describe(callout);
  EXPECT_EQ(changed, "second|new|2.000000|0|-+");

  step->Undo();
  std::string expected = mask & CalloutSnapshot::Definition ? "first|" : "second|";
  expected += mask & CalloutSnapshot::Text ? "old|" : "new|";
  expected += mask & CalloutSnapshot::LabelPosition ? "1.000000|" : "2.000000|";
  expected += mask & CalloutSnapshot::ItemId ? "3|" : "0|";
  expected += mask & CalloutSnapshot::Leaders ? "+" : "-+";
  EXPECT_EQ(Describe(callout), expected);
  step->Redo();
  EXPECT_EQ(Describe(callout), changed);
}

INSTANTIATE_TEST_SUITE_P(Masks, CalloutOperationStepTest,
                         ::testing::Values(0, CalloutSnapshot::Definition, CalloutSnapshot::Text,
                                           CalloutSnapshot::LabelPosition, CalloutSnapshot::ItemId,
                                           CalloutSnapshot::Leaders, CalloutSnapshot::AllAspects));

class CalloutSnapshotTest : public AnnotationFixture {};

TEST_F(CalloutSnapshotTest, RestoredTextKeepsTheRecordAndItsTranslations) {
  const CalloutPtr callout = MakeCallout(housing_, "literal");
  set_->AddAnnotationToSet(callout, nullptr);
  callout->SetText("bolt", false);
  callout->SetupLocalizationIfNecessary(false);
  const CalloutSnapshot before = callout->TakeSnapshot();
  callout->SetText("screw", false);
  callout->GetLocalizableString().SetLocaleText("de", "Schraube");
  const du::LocalizableString record = callout->GetLocalizableString();
  listener_->Take();
  callout->RestoreSnapshot(before, CalloutSnapshot::AllAspects);
  EXPECT_EQ(listener_->Take(), Log({"changed callout"}));
  EXPECT_TRUE(callout->GetLocalizableString().IsSameRecord(record));
  EXPECT_EQ(callout->GetLocalizableString().GetSourceText(), du::Symbol("bolt"));
  zrannotations::CalloutOperationStep empty(nullptr);
  empty.Undo();
  empty.Redo();
}

}  // namespace zrtest
