#include <zrannotations/CalloutOperationStep.h>

#include <zrannotations/CalloutSnapshot.h>

#include "AnnotationFixture.h"

namespace zrtest {

namespace {

using zrannotations::CalloutSnapshot;

class MaskedStep final : public zrannotations::CalloutOperationStep {
public:
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
    for (const auto& leader : callout->GetLeaders()) text += leader->IsDrawn() ? "drawn " : "hidden ";
    return text;
  }

  const TemplatePtr first_ = MakeTemplate("item");
};

TEST_P(CalloutOperationStepTest, RestoresTheAspectsOfItsMask) {
  const std::int32_t mask = GetParam();
  const CalloutPtr callout = zrk::MakeObject<zrannotations::Callout>();
  callout->Initialize(first_, housing_);
  callout->SetText("old", false);
  callout->SetLabelPosition(dg::DPoint3D(1, 0, 0));
  callout->SetItemId(3);
  const auto step = zrk::MakeObject<MaskedStep>(callout, mask);
  step->Redo();
  EXPECT_EQ(Describe(callout), "first|old|1.000000|3|drawn ") << "nothing to make again before an undo";

  callout->UpdateDefinition(MakeTemplate("literal"));
  callout->SetText("new", false);
  callout->SetLabelPosition(dg::DPoint3D(2, 0, 0));
  callout->ClearItemId();
  callout->GetLeaders().front()->SetHidden(true);
  callout->ConnectLeader(callout->CreateCalloutLeader(dg::DPoint3D(), gear_));
  const std::string changed = Describe(callout);
  EXPECT_EQ(changed, "second|new|2.000000|0|hidden drawn ");

  step->Undo();
  std::string expected = mask & CalloutSnapshot::Definition ? "first|" : "second|";
  expected += mask & CalloutSnapshot::Text ? "old|" : "new|";
  expected += mask & CalloutSnapshot::LabelPosition ? "1.000000|" : "2.000000|";
  expected += mask & CalloutSnapshot::ItemId ? "3|" : "0|";
  expected += mask & CalloutSnapshot::Leaders ? "drawn " : "hidden drawn ";
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
  EXPECT_EQ(listener_->Take(), Events({"changed callout"}));
  EXPECT_TRUE(callout->GetLocalizableString().IsSameRecord(record));
  EXPECT_EQ(callout->GetLocalizableString().GetSourceText(), du::Symbol("bolt"));
  zrannotations::CalloutOperationStep empty(nullptr);
  empty.Undo();
  empty.Redo();
}

}  // namespace

}  // namespace zrtest
