// Text and localisation of zrannotations::Callout.

#include <du/Localizer.h>

#include "AnnotationFixture.h"

namespace zrtest {

namespace {

using zrannotations::Callout;

class CalloutTextTest : public AnnotationFixture {
protected:
  CalloutTextTest() : callout_(MakeCallout(housing_, "literal")) { set_->AddAnnotationToSet(callout_, nullptr); }
  ~CalloutTextTest() override {
    Callout::SetPatternResolver(nullptr);
    du::Localizer::SetCurrentLanguage("en");
  }

  CalloutPtr callout_;
};

TEST_F(CalloutTextTest, GeneratedTextBecomesTheSourceOfAnEnabledString) {
  callout_->SetText("one", false);
  EXPECT_FALSE(callout_->GetLocalizableString().IsEnabled()) << "setting a text does not set localisation up";
  callout_->SetupLocalizationIfNecessary(true);
  EXPECT_EQ(callout_->GetLocalizableString().GetKey(), du::Symbol("NoteContent"));
  callout_->SetText("two", false);
  EXPECT_EQ(callout_->GetLocalizableString().GetSourceText(), du::Symbol("two"));
  callout_->SetText("zwei", true);
  EXPECT_EQ(callout_->GetLocalizableString().GetSourceText(), du::Symbol("two"));
  EXPECT_EQ(callout_->GetText(false), du::Symbol("zwei"));
  EXPECT_EQ(callout_->GetSetTextCount(), 3u);
}

TEST_F(CalloutTextTest, SetupMakesANewRecordOnlyForANewSource) {
  callout_->SetText("bolt", false);
  callout_->SetupLocalizationIfNecessary(false);
  const du::LocalizableString first = callout_->GetLocalizableString();
  callout_->SetupLocalizationIfNecessary(false);
  EXPECT_TRUE(callout_->GetLocalizableString().IsSameRecord(first));
  callout_->GetLocalizableString().SetLocaleText("de", "Schraube");

  // A callout that was deleted and comes back: its old record is disabled, its translations carry over.
  callout_->GetLocalizableString().SetDeleted(true);
  du::LocalizableString old = callout_->GetLocalizableString();
  callout_->SetupLocalizationIfNecessary(false);
  EXPECT_FALSE(callout_->GetLocalizableString().IsSameRecord(old));
  du::LocalizableString copy = callout_->GetLocalizableString();
  copy.CopyLocales(old);
  du::Localizer::SetCurrentLanguage("de");
  EXPECT_EQ(callout_->GetLocalizableString().GetText(), du::Symbol("Schraube"));
}

TEST_F(CalloutTextTest, ResolvesPatternsOfTheLocalisableStringOnly) {
  int calls = 0;
  Callout::SetPatternResolver([&](const CalloutPtr& callout, const du::Symbol& pattern, std::string& text) {
    ++calls;
    EXPECT_EQ(callout, callout_);
    text = "value of " + pattern.GetString();
    return pattern == du::Symbol("{0}");
  });
  struct Case {
    const char* text;
    bool fromLocalizable;
    const char* expected;
    int calls;
  };
  for (const Case& testCase : {Case{"{0}", true, "value of {0}", 1}, Case{"{1}", true, "{1}", 1},
                               Case{"plain", true, "plain", 0}, Case{"{0}", false, "{0}", 0}}) {
    calls = 0;
    callout_->SetText(testCase.text, testCase.fromLocalizable);
    EXPECT_EQ(callout_->GetText(false).GetString(), testCase.expected);
    EXPECT_EQ(calls, testCase.calls) << testCase.text;
  }
}

TEST_F(CalloutTextTest, PlainTextLeavesMarkdownOut) {
  struct Case {
    const char* markdown;
    const char* plain;
  };
  for (const Case& testCase :
       {Case{"**12** pcs", "12 pcs"}, Case{"M8\\_x\\*", "M8_x*"}, Case{"M8_x_20", "M8_x_20"}, Case{"_thin_", "thin"},
        Case{"## Title\n# 2\na#b", "Title\n2\na#b"}, Case{"\\", "\\"}, Case{"`~x~`", "x"}, Case{"", ""}}) {
    callout_->SetText(testCase.markdown, false);
    callout_->SetIsMarkdown(true);
    EXPECT_EQ(callout_->GetText(true).GetString(), testCase.plain);
    EXPECT_EQ(callout_->GetMarkupText(), testCase.markdown);
    callout_->SetIsMarkdown(false);
    EXPECT_EQ(callout_->GetText(true).GetString(), testCase.markdown);
  }
}

TEST_F(CalloutTextTest, TellsTheSceneOnlyOfAnotherText) {
  listener_->Take();
  callout_->SetText("1", false);
  callout_->SetText("1", false);
  EXPECT_EQ(listener_->Take(), Events({"changed callout"}));
  set_->RemoveAnnotationFromSet(callout_, nullptr);
  listener_->Take();
  callout_->SetText("2", false);
  EXPECT_EQ(listener_->Take(), Events());
}

TEST_F(CalloutTextTest, FontIsItsOwnOrThatOfTheTemplate) {
  EXPECT_EQ(zrk::MakeObject<Callout>()->GetFontFace(), "");
  zrk::illustration::TextProperties properties;
  properties.fontFace = "Template Sans";
  callout_->GetDefinition()->SetTextContent({new zrk::illustration::LabelContent("x", properties)}, true);
  EXPECT_EQ(callout_->GetFontFace(), "Template Sans");
  callout_->SetFontFace("Own Serif");
  EXPECT_EQ(callout_->GetFontFace(), "Own Serif");
}

}  // namespace

}  // namespace zrtest
