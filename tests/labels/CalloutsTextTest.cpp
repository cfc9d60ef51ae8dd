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

using zrk::Observable;
using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::TemplateBuilder;
using zrtest::TemplatePtr;
using zrtest::TextTemplate;

class CalloutsTextTest : public zrtest::SceneFixture {
protected:
  explicit CalloutsTextTest(const zrtest::SceneOptions& options = {}) : SceneFixture(options) {}

  void SetMass(const std::string& value) { tree_->SetProperty(bolt_.sbom, "Data", "Mass", du::Symbol(value), ""); }
  /// In no set, with the text "old".
  [[nodiscard]] CalloutPtr MakeOld(const TemplatePtr& callouttemplate, const Part& part, bool legacy = false) const {
    auto callout = MakeCallout(callouttemplate, part);
    callout->SetText("old", false);
    callout->SetLegacyDynamicText(legacy);
    return callout;
  }
  /// How often a callout was found without text since it was last asked.
  static std::size_t TakeEmptyTextTraces() {
    const auto entries = du::Tracer::TakeEntries();
    return std::count_if(entries.begin(), entries.end(), [](const auto& entry) {
      return entry.level == 2 && entry.module == "zrcallouts" && entry.category == "Callout" &&
             entry.text == "Callouts::SetCalloutText() - Empty Text for callout!";
    });
  }

  /// How often labels are rebuilt: each rebuild of a callout without text leaves a trace.
  static std::size_t RebuildsBy(const std::function<void()>& change) {
    TakeEmptyTextTraces();
    change();
    return TakeEmptyTextTraces();
  }

  const Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  const Part nut_ = structure_->AddPart(structure_->Root(), "nut");
  const TemplatePtr mass_ = TemplateBuilder().Property("Data", "Mass").Build();
};

TEST_F(CalloutsTextTest, ATextIsWrittenAndTheViewMarkedOnlyWhenItChanges) {
  const auto callout = MakeCallout(mass_, bolt_);
  for (const char* mass : {"2 kg", "3 kg"}) {
    SetMass(mass);
    const unsigned before = callout->GetSetTextCount();
    EXPECT_TRUE(engine_->SetCalloutText(callout));
    EXPECT_EQ(TextOf(callout), mass);
    EXPECT_FALSE(engine_->SetCalloutText(callout));
    EXPECT_EQ(callout->GetSetTextCount(), before + 1);
  }
  EXPECT_FALSE(engine_->SetCalloutText(nullptr));
  Add(callout);
  const unsigned before = view_->GetDirtyCount();
  engine_->RegenerateCalloutLabels();
  EXPECT_EQ(view_->GetDirtyCount(), before);
  callout->SetText("spoilt", false);
  engine_->RegenerateCalloutLabels();
  EXPECT_EQ(view_->GetDirtyCount(), before + 1);
  EXPECT_EQ(TextOf(callout), "3 kg");
}

TEST_F(CalloutsTextTest, AnEmptyLabelKeepsTheTextAndLeavesATrace) {
  for (const auto& callouttemplate : {mass_, TemplateBuilder().Build(), TemplatePtr()}) {
    const auto callout = MakeOld(callouttemplate, bolt_);
    EXPECT_FALSE(engine_->SetCalloutText(callout));
    EXPECT_EQ(TextOf(callout), "old");
    EXPECT_EQ(TakeEmptyTextTraces(), 1u);
  }
}

TEST_F(CalloutsTextTest, ALegacyCalloutKeepsItsDynamicTextUnlessItIsCombined) {
  const auto callout = MakeOld(mass_, bolt_, true);
  for (const char* value : {"", "2 kg"}) {
    SetMass(value);
    EXPECT_TRUE(engine_->SetCalloutText(callout));
    EXPECT_EQ(TextOf(callout), "old");
  }
  EXPECT_EQ(TakeEmptyTextTraces(), 0u);
  const auto combined = MakeCombined({MakeCallout(TextTemplate("new"), bolt_)});
  combined->SetText("old", false);
  combined->SetLegacyDynamicText(true);
  EXPECT_TRUE(engine_->SetCalloutText(combined));
  EXPECT_EQ(TextOf(combined), "new");
}

TEST_F(CalloutsTextTest, ACombinedCalloutJoinsItsMembersAndBringsThemUpToDate) {
  SetMass("2*kg");
  const auto plain = MakeCallout(mass_, bolt_);
  const auto legacy = MakeOld(TextTemplate("new"), nut_, true);
  legacy->SetText("old*", false);
  const auto empty = MakeOld(mass_, nut_);
  const auto markdown = MakeCallout(TemplateBuilder().Literal("**b**").Markdown().Build(), nut_);
  const auto combined = MakeCombined({plain, legacy, empty, markdown});
  for (const bool isMarkdown : {true, false}) {
    combined->SetIsMarkdown(isMarkdown);
    EXPECT_TRUE(engine_->SetCalloutText(combined));
    EXPECT_EQ(TextOf(combined), isMarkdown ? "2\\*kg\nold\\*\n**b**" : "2*kg\nold*\n**b**");
    EXPECT_FALSE(engine_->SetCalloutText(combined));
    EXPECT_EQ(TextOf(plain), "2*kg");  // in the member's own mode
    EXPECT_EQ(TextOf(legacy), "old*");
    EXPECT_EQ(TextOf(empty), "old");
  }
}

TEST_F(CalloutsTextTest, OnlyLabelsThatDependOnDataAreRebuilt) {
  SetMass("2 kg");
  TemplateBuilder literalShownAsValue;
  literalShownAsValue.Literal("Note").Pieces().front()->display = "Value";
  const struct {
    const char* what;
    TemplateBuilder contents;
    bool rebuilt, rebuiltWithSystem;
  } cases[] = {{"literal", TemplateBuilder().Literal("Note"), false, false},
               {"literal shown as value", literalShownAsValue, true, true},
               {"part property", TemplateBuilder().Property("Data", "Mass"), true, true},
               {"group without name", TemplateBuilder().Literal("a").Property("Data", ""), false, false},
               {"item token", TemplateBuilder().Token("zrITM"), false, true},
               {"item token shown as value", TemplateBuilder().Property("System", "zrITM", "Value"), true, true},
               {"null piece", TemplateBuilder().Null().Literal("a"), false, false}};
  const auto item = AddItem(bolt_);
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.what);
    for (const bool includeSystem : {false, true}) {
      const bool rebuilt = includeSystem ? tested.rebuiltWithSystem : tested.rebuilt;
      const auto callout = MakeOld(tested.contents.Build(), bolt_);
      callout->SetItemId(item);
      EXPECT_EQ(engine_->RegenerateCalloutLabel(callout, includeSystem), rebuilt);
      const auto combined = MakeCombined({MakeCallout(TextTemplate("x"), nut_), callout});
      EXPECT_EQ(engine_->RegenerateCalloutLabel(combined, includeSystem), rebuilt);
    }
  }
  EXPECT_FALSE(engine_->RegenerateCalloutLabel(nullptr, true));
}

TEST_F(CalloutsTextTest, ATreeUpdateRebuildsLabelsOnceAndOnlyAfterPropertyChanges) {
  AddCallout(mass_, bolt_);
  const auto set = [&](const char* name, const char* value) {
    tree_->SetProperty(nut_.sbom, "Data", name, du::Symbol(value), "");
  };
  set("Colour", "red");
  set("Size", "M8");
  EXPECT_EQ(RebuildsBy([&] {
              const Observable::UpdateGroup update(*tree_);
              for (const char* value : {"1", "2", "3"}) set("Colour", value);
              tree_->SetDefaultPropertyGroup(nut_.sbom, "Data");
            }),
            1u);
  EXPECT_EQ(RebuildsBy([&] { set("Colour", "blue"); }), 1u);
  EXPECT_EQ(RebuildsBy([&] { tree_->SetDefaultPropertyGroup(nut_.sbom, "Other"); }), 1u);
  EXPECT_EQ(RebuildsBy([&] { const Observable::UpdateGroup update(*tree_); }), 0u);
  EXPECT_EQ(RebuildsBy([&] { structure_->AddPart(structure_->Root(), "washer"); }), 0u);
  EXPECT_EQ(RebuildsBy([&] { tree_->RemoveProperty(nut_.sbom, "Data", "Size"); }), 0u);
  EXPECT_EQ(RebuildsBy([&] { tree_->DestroyTree(); }), 0u);
  const auto root = tree_->CreateRoot("another", nullptr);  // a destroyed tree is no longer listened to
  EXPECT_EQ(RebuildsBy([&] { tree_->SetProperty(root, "Data", "Size", "1", ""); }), 0u);
}

class AuthoringTextTest : public CalloutsTextTest {
protected:
  AuthoringTextTest() : CalloutsTextTest({.authoring = true}) {}
};

TEST_F(AuthoringTextTest, TableAndApplicationChangesRebuildLabels) {
  AddCallout(mass_, bolt_);
  const auto table = world_->GetAnnoSetTable();
  EXPECT_EQ(RebuildsBy([&] {
              const Observable::UpdateGroup update(*table);
              for (int i = 0; i < 3; ++i) table->ChangeTable();
              EXPECT_EQ(TakeEmptyTextTraces(), 0u);
            }),
            1u);
  EXPECT_EQ(RebuildsBy([&] { const Observable::UpdateGroup update(*table); }), 0u);
  const std::size_t expected[] = {0, 1, 1, 1, 1, 1, 0};  // a new structure has no callouts yet; publishing changes none
  for (unsigned event = 0; event < std::size(expected); ++event)
    EXPECT_EQ(RebuildsBy([&] { application_->Fire(event); }), expected[event]) << event;
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
  const auto addTranslated = [&](bool deleted) {
    const auto callout = AddCallout(TextTemplate("Note"), bolt_);
    callout->SetText("Note", false);
    callout->SetupLocalizationIfNecessary(false);
    callout->GetLocalizableString().SetLocaleText("de", "Hinweis");
    callout->GetLocalizableString().SetDeleted(deleted);
    return callout;
  };
  const auto translated = addTranslated(false);
  const auto removed = addTranslated(true);
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
  const auto note = TextTemplate("old");
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
  const auto changing = TextTemplate("Note");
  const auto callout = AddCallout(changing, bolt_);
  const auto expectAfter = [&](const TemplatePtr& replacement, const char* text, std::uint32_t expectedItem) {
    changing->ReplaceBy(*replacement);
    std::uint32_t carried = 0;
    EXPECT_EQ(callout->GetItemId(carried), expectedItem != 0);
    EXPECT_EQ(carried, expectedItem);
    EXPECT_EQ(TextOf(callout), text);
  };
  ASSERT_FALSE(callout->HasItemId());
  expectAfter(zrtest::NumberTemplate(), "1", item);
  callout->SetCustom(true);  // since then the template is none of its business
  expectAfter(TextTemplate("Other"), "1", item);
  callout->SetCustom(false);
  expectAfter(TextTemplate("Another"), "Another", 0);
}

TEST_F(CalloutsTextTest, TypeUpdatesSayWhetherTheyChangedSomething) {
  const std::uint32_t item = AddItem(bolt_);
  const auto number = zrtest::NumberTemplate();
  const auto note = TextTemplate("Note");
  const struct {
    TemplatePtr callouttemplate;
    Part part;
    std::uint32_t before, after;
  } cases[] = {{number, bolt_, 0, item}, {number, bolt_, 77, 77}, {number, nut_, 0, 0},        {number, Part{}, 0, 0},
               {note, bolt_, item, 0},   {note, bolt_, 0, 0},     {nullptr, bolt_, item, item}};
  for (const auto& tested : cases) {
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
