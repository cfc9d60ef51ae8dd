// Templates and languages. A template that begins or ceases to show items changes the item numbers of its callouts, and
// nobody promises how the items are marked from then on.

#include "HostCall.h"

namespace zrfuzz {

namespace {

std::string UseTemplate(LiveScene& live, unsigned first, unsigned /*second*/) {
  const TemplatePtr callouttemplate = first == 255 ? nullptr : live.TemplateAt(first);
  live.engine->SetTemplate(callouttemplate);
  return "new callouts after " + (callouttemplate ? callouttemplate->GetId() : "nothing");
}

/// One of those that say something of any callout: an empty label replaces no text, so undo could not bring one back.
/// And no plain text: callouts without a part to point at remain while they are texts.
const TemplatePtr& SpeakingTemplate(const LiveScene& live, unsigned choice) {
  constexpr unsigned kSpeaking[] = {1, 3, 4};
  return live.TemplateAt(kSpeaking[choice % 3]);
}

std::string ChangeTemplate(LiveScene& live, unsigned first, unsigned second) {
  const TemplatePtr& callouttemplate = SpeakingTemplate(live, first);
  const TemplatePtr& content = SpeakingTemplate(live, second);
  zrtest::Contents contents;
  const bool hasContent = content->GetTextContent(contents);
  live.Edit("change template",
            [&](const auto& operation) { callouttemplate->SetTextContent(contents, hasContent, operation); });
  return "let " + callouttemplate->GetId() + " say what " + content->GetId() + " says";
}

std::string ReplaceTemplate(LiveScene& live, unsigned first, unsigned second) {
  const TemplatePtr& callouttemplate = SpeakingTemplate(live, first);
  const TemplatePtr& other = SpeakingTemplate(live, second);
  if (first < 128) return "no template replaced";  // most programs shall keep a history that says what to expect
  live.ForgetMarks();
  live.isPredictable = live.exactHistory = false;
  live.Edit("replace template", [&](const auto& operation) { callouttemplate->ReplaceBy(*other, operation); });
  return "replace " + callouttemplate->GetId() + " by " + other->GetId();
}

// Texts in the history are of the language before, so it goes.
std::string ChangeLanguage(LiveScene& live, unsigned first, unsigned /*second*/) {
  static const char* const kLanguages[] = {"en", "de", "fr", "ja", "xx"};
  live.ClearHistory();
  live.world->ChangeLanguage(kLanguages[first % 5]);
  return std::string("language ") + kLanguages[first % 5];
}

std::string TouchLabels(LiveScene& live, unsigned first, unsigned /*second*/) {
  const auto callout = live.CalloutAt(first);
  live.engine->RegenerateCalloutLabels();
  static_cast<void>(live.engine->RegenerateCalloutLabel(callout, true));
  du::Symbol pattern;
  zrtest::Contents contents;
  zrtest::Contents localized;
  if (live.engine->GetTemplateLocalizableString(callout, pattern)) {
    callout->GetDefinition()->GetTextContent(contents);
    live.engine->LocalizeTemplateText(pattern, contents, localized);
  }
  static_cast<void>(live.engine->GetCalloutsAndInsetsFonts(first % 2 == 0));
  return "write all labels anew";
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {{4, Effect::Nothing, UseTemplate},
                               {2, Effect::Recorded, ChangeTemplate},
                               {1, Effect::Recorded, ReplaceTemplate},
                               {1, Effect::Aside, ChangeLanguage},
                               {1, Effect::Aside, TouchLabels}};

}  // namespace

std::span<const HostCall> TemplateCalls() {
  return kCalls;
}

}  // namespace zrfuzz
