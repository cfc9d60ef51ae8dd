// Labels are stored in callouts and kept current.
#include <algorithm>
#include <functional>

#include <du/LocalizableString.h>
#include <du/Localizer.h>
#include <du/Tracer.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/MakeObject.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::CombinedPtr;
using zrtest::Part;
using zrtest::SceneFixture;
using zrtest::TemplateBuilder;

constexpr const char* kEmptyText = "Callouts::SetCalloutText() - Empty Text for callout!";

class CalloutsTextTest : public SceneFixture {
protected:
  explicit CalloutsTextTest(const zrtest::SceneOptions& options = {}) : SceneFixture(options) {}

  void SetMass(const std::string& value) { tree_->SetProperty(bolt_.sbom, "Data", "Mass", du::Symbol(value), ""); }

  static std::size_t TakeEmptyTextTraces() {
    const auto entries = du::Tracer::TakeEntries();
    return std::count_if(entries.begin(), entries.end(), [](const auto& entry) {
      return entry.level == 2 && entry.module == "zrcallouts" && entry.category == "Callout" &&
             entry.text == kEmptyText;
    });
  }

  const Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  const Part nut_ = structure_->AddPart(structure_->Root(), "nut");
  const zrtest::TemplatePtr mass_ = TemplateBuilder().Property("Data", "Mass").Build();
};

TEST_F(CalloutsTextTest, ATextIsWrittenOnlyWhenItChanges) {
  SetMass("2 kg");
  const auto callout = MakeCallout(mass_, bolt_);
  EXPECT_TRUE(engine_->SetCalloutText(callout));
  EXPECT_EQ(TextOf(callout), "2 kg");
  EXPECT_FALSE(engine_->SetCalloutText(callout));
  EXPECT_EQ(callout->GetSetTextCount(), 1u);
  SetMass("3 kg");
  EXPECT_TRUE(engine_->SetCalloutText(callout));
  EXPECT_EQ(callout->GetSetTextCount(), 2u);
  EXPECT_FALSE(engine_->SetCalloutText(nullptr));
}

TEST_F(CalloutsTextTest, AnEmptyLabelKeepsTheTextAndLeavesATrace) {
  for (const auto& callouttemplate : {mass_, TemplateBuilder().Build(), zrtest::TemplatePtr()}) {
    const auto callout = MakeCallout(callouttemplate, bolt_);
    callout->SetText("old", false);
    EXPECT_FALSE(engine_->SetCalloutText(callout));
    EXPECT_EQ(TextOf(callout), "old");
    EXPECT_EQ(TakeEmptyTextTraces(), 1u);
  }
}

TEST_F(CalloutsTextTest, ALegacyCalloutKeepsItsDynamicText) {
  const auto callout = MakeCallout(mass_, bolt_);
  callout->SetText("old", false);
  callout->SetLegacyDynamicText(true);
  for (const char* value : {"", "2 kg"}) {
    SetMass(value);
    EXPECT_TRUE(engine_->SetCalloutText(callout));
    EXPECT_EQ(TextOf(callout), "old");
  }
  EXPECT_EQ(TakeEmptyTextTraces(), 0u);
}

TEST_F(CalloutsTextTest, ACombinedCalloutJoinsItsMembersAndBringsThemUpToDate) {
  SetMass("2*kg");
  const auto plain = MakeCallout(mass_, bolt_);
  const auto legacy = MakeCallout(zrtest::TextTemplate("new"), nut_);
  legacy->SetText("old*", false);
  legacy->SetLegacyDynamicText(true);
  const auto empty = MakeCallout(mass_, nut_);
  empty->SetText("stays", false);
  const auto markdown = MakeCallout(TemplateBuilder().Literal("**b**").Markdown().Build(), nut_);
  const auto combined = MakeCombined({plain, legacy, empty, markdown});
  combined->SetIsMarkdown(true);

  EXPECT_TRUE(engine_->SetCalloutText(combined));
  EXPECT_EQ(TextOf(combined), "2\\*kg\nold\\*\n**b**");
  EXPECT_EQ(TextOf(plain), "2*kg");  // in the member's own mode
  EXPECT_EQ(TextOf(legacy), "old*");
  EXPECT_EQ(TextOf(empty), "stays");
  EXPECT_FALSE(engine_->SetCalloutText(combined));
  combined->SetIsMarkdown(false);
  EXPECT_TRUE(engine_->SetCalloutText(combined));
  EXPECT_EQ(TextOf(combined), "2*kg\nold*\n**b**");
}

TEST_F(CalloutsTextTest, ACombinedCalloutIsNeverLegacyAsAWhole) {
  const auto combined = MakeCombined({MakeCallout(zrtest::TextTemplate("new"), bolt_)});
  combined->SetText("old", false);
  combined->SetLegacyDynamicText(true);
  EXPECT_TRUE(engine_->SetCalloutText(combined));
  EXPECT_EQ(TextOf(combined), "new");
}

struct DependencyCase {
  const char* name;
  TemplateBuilder contents;
  bool rebuilt;
  bool rebuiltWithSystem;
};

class DependencyTest : public CalloutsTextTest, public ::testing::WithParamInterface<DependencyCase> {
protected:
  bool Regenerates(bool includeSystem, bool asMember) {
    const auto callout = MakeCallout(GetParam().contents.Build(), bolt_, AddItem(bolt_));
    const CalloutPtr tested =
        asMember ? CalloutPtr(MakeCombined({MakeCallout(zrtest::TextTemplate("x"), nut_), callout})) : callout;
    tested->SetText("old", false);
    return engine_->RegenerateCalloutLabel(tested, includeSystem);
  }
};

TEST_P(DependencyTest, OnlyLabelsThatDependOnDataAreRebuilt) {
  SetMass("2 kg");
  for (const bool asMember : {false, true}) {
    EXPECT_EQ(Regenerates(false, asMember), GetParam().rebuilt);
    EXPECT_EQ(Regenerates(true, asMember), GetParam().rebuiltWithSystem);
  }
}

zrtest::TemplateBuilder LiteralShownAsValue() {
  TemplateBuilder builder;
  builder.Literal("Note");
  builder.Pieces().front()->display = "Value";
  return builder;
}

INSTANTIATE_TEST_SUITE_P(
    Contents, DependencyTest,
    ::testing::Values(
        DependencyCase{"Literal", TemplateBuilder().Literal("Note"), false, false},
        DependencyCase{"LiteralShownAsValue", LiteralShownAsValue(), true, true},
        DependencyCase{"PartProperty", TemplateBuilder().Property("Data", "Mass"), true, true},
        DependencyCase{"GroupWithoutName", TemplateBuilder().Literal("a").Property("Data", ""), false, false},
        DependencyCase{"ItemToken", TemplateBuilder().Token("zrITM"), false, true},
        DependencyCase{"ItemTokenShownAsValue", TemplateBuilder().Property("System", "zrITM", "Value"), true, true},
        DependencyCase{"NullPiece", TemplateBuilder().Null().Literal("a"), false, false}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(CalloutsTextTest, RegenerationMarksTheViewOnlyWhenATextChanged) {
  SetMass("2 kg");
  const auto callout = AddCallout(mass_, bolt_);
  const unsigned before = view_->GetDirtyCount();
  engine_->RegenerateCalloutLabels();
  EXPECT_EQ(view_->GetDirtyCount(), before);
  callout->SetText("spoilt", false);
  engine_->RegenerateCalloutLabels();
  EXPECT_EQ(view_->GetDirtyCount(), before + 1);
  EXPECT_EQ(TextOf(callout), "2 kg");
  EXPECT_FALSE(engine_->RegenerateCalloutLabel(nullptr, true));
}

// How often the labels were rebuilt: each rebuild of a callout without text leaves a trace.
TEST_F(CalloutsTextTest, ATreeUpdateRebuildsLabelsOnceAndOnlyAfterPropertyChanges) {
  SetMass("");
  AddCallout(mass_, bolt_);
  const auto rebuilds = [&](const std::function<void()>& change) {
    TakeEmptyTextTraces();
    change();
    return TakeEmptyTextTraces();
  };
  const auto set = [&](const char* name, const char* value) {
    tree_->SetProperty(nut_.sbom, "Data", name, du::Symbol(value), "");
  };
  set("Colour", "red");
  set("Size", "M8");
  EXPECT_EQ(rebuilds([&] {
              const zrk::Observable::UpdateGroup update(*tree_);
              for (const char* value : {"1", "2", "3"}) set("Colour", value);
              tree_->SetDefaultPropertyGroup(nut_.sbom, "Data");
            }),
            1u);
  EXPECT_EQ(rebuilds([&] { set("Colour", "blue"); }), 1u);
  EXPECT_EQ(rebuilds([&] { tree_->SetDefaultPropertyGroup(nut_.sbom, "Other"); }), 1u);
  EXPECT_EQ(rebuilds([&] { const zrk::Observable::UpdateGroup update(*tree_); }), 0u);
  EXPECT_EQ(rebuilds([&] { structure_->AddPart(structure_->Root(), "washer"); }), 0u);
  EXPECT_EQ(rebuilds([&] { tree_->RemoveProperty(nut_.sbom, "Data", "Size"); }), 0u);
  EXPECT_EQ(rebuilds([&] { tree_->DestroyTree(); }), 0u);
  const auto root = tree_->CreateRoot("another", nullptr);  // a destroyed tree is no longer listened to
  EXPECT_EQ(rebuilds([&] {
              for (const char* value : {"1", "2"}) tree_->SetProperty(root, "Data", "Size", value, "");
            }),
            0u);
}

class AuthoringTextTest : public CalloutsTextTest {
protected:
  AuthoringTextTest() : CalloutsTextTest({.authoring = true}) {}
};

TEST_F(AuthoringTextTest, TableAndApplicationChangesRebuildLabels) {
  const auto callout = AddCallout(mass_, bolt_);
  TakeEmptyTextTraces();
  const auto table = world_->GetAnnoSetTable();
  {
    const zrk::Observable::UpdateGroup update(*table);
    for (int i = 0; i < 3; ++i) table->ChangeTable();
    EXPECT_EQ(TakeEmptyTextTraces(), 0u);
  }
  EXPECT_EQ(TakeEmptyTextTraces(), 1u);
  { const zrk::Observable::UpdateGroup update(*table); }
  EXPECT_EQ(TakeEmptyTextTraces(), 0u);
  const std::size_t expected[] = {0, 1, 1, 1, 1, 1, 0};  // a new structure has no callouts yet; publishing changes none
  for (unsigned event = 0; event < std::size(expected); ++event) {
    application_->Fire(event);
    EXPECT_EQ(TakeEmptyTextTraces(), expected[event]) << event;
  }
}

TEST_F(AuthoringTextTest, BatchPublishingLeavesNewLabelsAlone) {
  EXPECT_TRUE(engine_->RegenerateCalloutLabelOnAdd());
  application_->SetBatchPublishing(true);
  EXPECT_FALSE(engine_->RegenerateCalloutLabelOnAdd());
  zrkapp::illustration::OrreryApp::SetOrreryApp(nullptr);
  EXPECT_TRUE(engine_->RegenerateCalloutLabelOnAdd());
}

TEST_F(CalloutsTextTest, PredefinedTextComesInTheLanguageAndModeOfTheCallout) {
  const auto callout = MakeCallout(mass_, bolt_);
  world_->ChangeLanguage("fr");
  engine_->SetPredefinedText(callout);
  EXPECT_EQ(TextOf(callout), "Texte");
  du::Localizer::SetMessage("zrbase:zrmodulesStrings", "850", "xx", "a*b");
  du::Localizer::SetCurrentLanguage("xx");
  callout->SetIsMarkdown(true);
  engine_->SetPredefinedText(callout);
  EXPECT_EQ(TextOf(callout), "a\\*b");
  engine_->SetPredefinedText(nullptr);
}

TEST_F(CalloutsTextTest, ATemplateHasTextWhenItNeedsItemsOrYieldsSome) {
  EXPECT_FALSE(engine_->HasTemplateText(nullptr));
  EXPECT_FALSE(engine_->HasTemplateText(MakeCallout(nullptr, bolt_)));
  EXPECT_FALSE(engine_->HasTemplateText(MakeCallout(mass_, bolt_)));
  SetMass("2 kg");
  EXPECT_TRUE(engine_->HasTemplateText(MakeCallout(mass_, bolt_)));
  EXPECT_TRUE(engine_->HasTemplateText(MakeCallout(zrtest::NumberTemplate(), bolt_)));
}

TEST_F(CalloutsTextTest, ALanguageChangeShowsTranslationsAndNothingElse) {
  const auto translated = AddCallout(zrtest::TextTemplate("Note"), bolt_);
  translated->SetText("Note", false);
  translated->SetupLocalizationIfNecessary(false);
  translated->GetLocalizableString().SetLocaleText("de", "Hinweis");
  const auto removed = AddCallout(zrtest::TextTemplate("Note"), bolt_);
  removed->SetText("Note", false);
  removed->SetupLocalizationIfNecessary(false);
  removed->GetLocalizableString().SetLocaleText("de", "Weg");
  removed->GetLocalizableString().SetDeleted(true);
  const auto number = AddCallout(zrtest::NumberTemplate(), bolt_, AddItem(bolt_));
  const unsigned numberWritten = number->GetSetTextCount();
  const auto inset = zrk::MakeObject<zrannotations::Inset>();
  inset->SetCaptionText("Detail", false, false);
  inset->SetupLocalizationIfNecessary();
  inset->GetLocalizableString().SetLocaleText("de", "Einzelheit");
  Add(inset);
  Remove(inset);  // its entry stays, and with it the interest in its caption

  world_->ChangeLanguage("de");
  EXPECT_EQ(TextOf(translated), "Hinweis");
  EXPECT_EQ(TextOf(removed), "Note");
  EXPECT_EQ(number->GetSetTextCount(), numberWritten);
  EXPECT_EQ(inset->GetCaptionText().GetString(), "Einzelheit");
  world_->ChangeLanguage("en");
  EXPECT_EQ(TextOf(translated), "Note");
}

TEST_F(CalloutsTextTest, AnEditedTemplateRewritesItsCallouts) {
  const auto note = TemplateBuilder().Literal("old").Build();
  const auto callout = AddCallout(note, bolt_);
  const auto custom = AddCallout(note, bolt_);
  custom->SetCustom(true);
  Remove(custom);
  Add(custom);
  const unsigned before = view_->GetDirtyCount();
  note->SetTextContent(TemplateBuilder().Literal("new").Pieces(), true);
  EXPECT_EQ(TextOf(callout), "new");
  EXPECT_EQ(view_->GetDirtyCount(), before + 1);
  EXPECT_NE(TextOf(custom), "new");
  Remove(callout);
  note->SetTextContent(TemplateBuilder().Literal("newer").Pieces(), true);
  EXPECT_EQ(TextOf(callout), "new");
}

TEST_F(CalloutsTextTest, AReplacedTemplateChangesWhatTheCalloutCarries) {
  const std::uint32_t item = AddItem(bolt_);
  const auto changing = TemplateBuilder().Literal("Note").Build();
  const auto callout = AddCallout(changing, bolt_);
  ASSERT_FALSE(callout->HasItemId());
  changing->ReplaceBy(*zrtest::NumberTemplate());
  std::uint32_t carried = 0;
  EXPECT_TRUE(callout->GetItemId(carried));
  EXPECT_EQ(carried, item);
  EXPECT_EQ(TextOf(callout), "1");

  callout->SetCustom(true);  // since then the template is none of its business
  changing->ReplaceBy(*zrtest::TextTemplate("Other"));
  EXPECT_TRUE(callout->HasItemId());
  EXPECT_EQ(TextOf(callout), "1");
  callout->SetCustom(false);
  changing->ReplaceBy(*zrtest::TextTemplate("Another"));
  EXPECT_FALSE(callout->HasItemId());
  EXPECT_EQ(TextOf(callout), "Another");
}

TEST_F(CalloutsTextTest, TypeUpdatesSayWhetherTheyChangedSomething) {
  const std::uint32_t item = AddItem(bolt_);
  struct Case {
    zrtest::TemplatePtr callouttemplate;
    Part part;
    std::uint32_t before, after;
  };
  const auto number = zrtest::NumberTemplate();
  const auto note = zrtest::TextTemplate("Note");
  const Case cases[] = {{number, bolt_, 0, item},    {number, bolt_, 77, 77}, {number, nut_, 0, 0},
                        {number, Part{}, 0, 0},      {note, bolt_, item, 0},  {note, bolt_, 0, 0},
                        {nullptr, bolt_, item, item}};
  for (const Case& tested : cases) {
    CalloutPtr callout = MakeCallout(tested.callouttemplate, tested.part, tested.before);
    EXPECT_EQ(engine_->CheckForTypeUpdate(callout), tested.before != tested.after);
    std::uint32_t carried = 0;
    static_cast<void>(callout->GetItemId(carried));
    EXPECT_EQ(carried, tested.after);
  }
  CalloutPtr none;
  EXPECT_FALSE(engine_->CheckForTypeUpdate(none));
}

}  // namespace
