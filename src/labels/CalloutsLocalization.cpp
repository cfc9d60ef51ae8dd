// Texts across languages: patterns of templates, and callouts and insets when the language changes.
#include <dp/ReadWriteLock.h>
#include <du/LocalizableString.h>
#include <zrannotations/Callout.h>
#include <zrannotations/Inset.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>

#include "labels/TemplatePattern.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::Inset;

namespace zrcallouts {

bool Callouts::GetTemplateLocalizableString(const du::SmartPtr<Callout>& callout, du::Symbol& pattern) const {
  const auto definition = callout ? callout->GetDefinition() : nullptr;
  if (!definition) return false;
  pattern = du::Symbol();
  Contents contents;
  if (!definition->GetTextContent(contents)) {
    pattern = callout->GetText(false);
    return true;
  }
  std::string text;
  const bool hasLiteral = MakePattern(contents, text);
  pattern = du::Symbol(text);
  return hasLiteral;
}

void Callouts::LocalizeTemplateText(const du::Symbol& pattern, const Contents& templateContents,
                                    Contents& localized) const {
  ReadPattern(pattern.GetString(), templateContents, localized);
}

void Callouts::OnLanguageChanged() {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  for (const auto& callout : CopyOfCallouts()) OnLanguageChanged(du::SmartPtr<zrk::Annotation>(callout));
  const InsetTable insets = insetTable_;
  for (const auto& entry : insets) OnLanguageChanged(du::SmartPtr<zrk::Annotation>(entry.first));
}

void Callouts::OnLanguageChanged(const du::SmartPtr<zrk::Annotation>& annotation) {
  if (const auto callout = du::DynamicCast<Callout>(annotation)) {
    const du::LocalizableString text = callout->GetLocalizableString();
    if (text.IsEnabled()) callout->SetText(text.GetText(), true);
  } else if (const auto inset = du::DynamicCast<Inset>(annotation)) {
    const du::LocalizableString caption = inset->GetLocalizableString();
    if (caption.IsEnabled()) inset->SetCaptionText(caption.GetText(), false, true);
  }
}

}  // namespace zrcallouts
