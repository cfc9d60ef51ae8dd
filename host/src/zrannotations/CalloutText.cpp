// Text, localisation and font of a callout.

#include <algorithm>
#include <memory>
#include <utility>

#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>

#include "MarkdownText.h"

namespace zrannotations {

namespace {

struct ResolverSlot {
  dp::Mutex mutex;
  std::shared_ptr<const Callout::PatternResolver> resolver ZR_GUARDED_BY(mutex);
};

ResolverSlot& GetResolverSlot() {
  static ResolverSlot slot;
  return slot;
}

}  // namespace

du::Symbol Callout::GetText(bool plain) const {
  du::Symbol text;
  {
    const dp::MutexGuard guard(mutex_);
    text = text_;
  }
  return plain && IsMarkdown() ? du::Symbol(StripMarkdown(text.GetString())) : text;
}

void Callout::SetText(const du::Symbol& text, bool fromLocalizable) {
  const du::Symbol shown = fromLocalizable ? ResolvePattern(text) : text;
  du::LocalizableString localizable;
  bool changed = false;
  {
    const dp::MutexGuard guard(mutex_);
    ++counters_.setText;
    changed = text_ != shown;
    text_ = shown;
    localizable = localizableString_;
  }
  if (!fromLocalizable && localizable.IsEnabled()) localizable.SetSourceText(text);
  if (changed) NotifyModified(false);
}

unsigned Callout::GetSetTextCount() const {
  const dp::MutexGuard guard(mutex_);
  return counters_.setText;
}

std::string Callout::GetMarkupText() const {
  return GetText(false).GetString();
}

bool Callout::IsMarkdown() const {
  const dp::MutexGuard guard(mutex_);
  return markdown_ ? *markdown_ : definition_ && definition_->IsMarkdown();
}

void Callout::SetIsMarkdown(bool markdown) {
  const dp::MutexGuard guard(mutex_);
  markdown_ = markdown;
}

bool Callout::CheckDynamicTextForLegacyCallout(const std::string&) const {
  const dp::MutexGuard guard(mutex_);
  return flags_.legacyDynamicText;
}

void Callout::SetLegacyDynamicText(bool legacy) {
  const dp::MutexGuard guard(mutex_);
  flags_.legacyDynamicText = legacy;
}

du::LocalizableString& Callout::GetLocalizableString() {
  return localizableString_;
}

void Callout::SetupLocalizationIfNecessary(bool notes) {
  const dp::MutexGuard guard(mutex_);
  if (localizableString_.IsEnabled() && localizableString_.GetSourceText() == text_) return;
  localizableString_ = du::LocalizableString::Create(notes ? "NoteContent" : "", text_);
}

bool Callout::IsLabelLocalizable() const {
  return GetType() != ItemListType;
}

bool Callout::IsReferencedInAnimation() const {
  const dp::MutexGuard guard(mutex_);
  return flags_.referencedInAnimation;
}

void Callout::SetReferencedInAnimation(bool referenced) {
  const dp::MutexGuard guard(mutex_);
  flags_.referencedInAnimation = referenced;
}

std::string Callout::GetFontFace() const {
  Template definition;
  {
    const dp::MutexGuard guard(mutex_);
    if (!fontFace_.empty()) return fontFace_;
    definition = definition_;
  }
  zrk::illustration::TAnnotation::Contents contents;
  if (!definition || !definition->GetTextContent(contents)) return {};
  return contents.empty() || !contents.front() ? std::string() : contents.front()->textProperties.fontFace;
}

void Callout::SetFontFace(const std::string& fontFace) {
  const dp::MutexGuard guard(mutex_);
  fontFace_ = fontFace;
}

void Callout::SetPatternResolver(PatternResolver resolver) {
  auto shared = resolver ? std::make_shared<const PatternResolver>(std::move(resolver)) : nullptr;
  ResolverSlot& slot = GetResolverSlot();
  const dp::MutexGuard guard(slot.mutex);
  slot.resolver.swap(shared);
}

du::Symbol Callout::ResolvePattern(const du::Symbol& text) {
  std::shared_ptr<const PatternResolver> resolver;
  {
    ResolverSlot& slot = GetResolverSlot();
    const dp::MutexGuard guard(slot.mutex);
    resolver = slot.resolver;
  }
  if (!resolver || text.GetString().find('{') == std::string::npos) return text;
  std::string resolved;
  return (*resolver)(du::SmartPtr<Callout>(this), text, resolved) ? du::Symbol(resolved) : text;
}

}  // namespace zrannotations
