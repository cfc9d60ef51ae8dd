// Text and localisation of zrannotations::Callout.

#include <du/Localizer.h>

#include "AnnotationFixture.h"

namespace zrtest {

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
  const auto shown = [&](const char* text, bool fromLocalizable) {
    callout_->SetText(text, fromLocalizable);
    return callout_->GetText(false).GetString();
  };
  EXPECT_EQ(shown("{0}", true), "value of {0}");
  EXPECT_EQ(shown("{1}", true), "{1}");
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(shown("plain", true), "plain");
  EXPECT_EQ(shown("{0}", false), "{0}");
  EXPECT_EQ(calls, 2) << "nothing to resolve";
}

TEST_F(CalloutTextTest, PlainTextLeavesMarkdownOut) {
  const std::pair<const char*, const char*> cases[] = {{"**12** pcs", "12 pcs"},
                                                       {"M8\\_x\\*", "M8_x*"},
                                                       {"M8_x_20", "M8_x_20"},
                                                       {"_thin_", "thin"},
                                                       {"## Title\n# 2\na#b", "Title\n2\na#b"},
                                                       {"\\", "\\"},
                                                       {"`~x~`", "x"},
                                                       {"", ""}};
  for (const auto& [markdown, plain] : cases) {
    callout_->SetText(markdown, false);
    callout_->SetIsMarkdown(true);
    EXPECT_EQ(callout_->GetText(true).GetString(), plain);
    EXPECT_EQ(callout_->GetMarkupText(), markdown);
    callout_->SetIsMarkdown(false);
    EXPECT_EQ(callout_->GetText(true).GetString(), markdown);
  }
}

TEST_F(CalloutTextTest, TellsTheSceneOnlyOfAnotherText) {
  listener_->Take();
  callout_->SetText("1", false);
  callout_->SetText("1", false);
  set_->RemoveAnnotationFromSet(callout_, nullptr);
  callout_->SetText("2", false);
  EXPECT_EQ(listener_->Take(), Log({"changed callout", "remove callout"}));
}

TEST_F(CalloutTextTest, FontIsItsOwnOrThatOfTheTemplate) {
  EXPECT_EQ(MakeObject<Callout>()->GetFontFace(), "");
  zrk::illustration::TextProperties properties;
  properties.fontFace = "Template Sans";
  callout_->GetDefinition()->SetTextContent({new zrk::illustration::LabelContent("x", properties)}, true);
  EXPECT_EQ(callout_->GetFontFace(), "Template Sans");
  callout_->SetFontFace("Own Serif");
  EXPECT_EQ(callout_->GetFontFace(), "Own Serif");
}

}  // namespace zrtest
