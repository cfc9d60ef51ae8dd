#include <du/LocalizableString.h>

#include <map>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Localizer.h>

namespace du {

struct LocalizableString::Record {
  mutable dp::Mutex mutex;
  Symbol key ZR_GUARDED_BY(mutex);
  Symbol sourceText ZR_GUARDED_BY(mutex);
  std::map<std::string, Symbol> locales ZR_GUARDED_BY(mutex);
  bool enabled ZR_GUARDED_BY(mutex) = false;
  bool deleted ZR_GUARDED_BY(mutex) = false;
};

LocalizableString::LocalizableString() = default;
LocalizableString::LocalizableString(const LocalizableString& other) = default;
LocalizableString& LocalizableString::operator=(const LocalizableString& other) = default;
LocalizableString::~LocalizableString() = default;

LocalizableString LocalizableString::Create(const Symbol& key, const Symbol& sourceText) {
  LocalizableString result;
  result.SetKey(key);
  result.SetSourceText(sourceText);
  result.SetEnabled(true);
  return result;
}

LocalizableString::Record& LocalizableString::MakeRecord() {
  if (!record_) record_ = std::make_shared<Record>();
  return *record_;
}

bool LocalizableString::IsEnabled() const {
  if (!record_) return false;
  const dp::MutexGuard guard(record_->mutex);
  return record_->enabled && !record_->deleted;
}

bool LocalizableString::IsEmpty() const {
  if (!record_) return true;
  const dp::MutexGuard guard(record_->mutex);
  if (!record_->sourceText.IsEmpty()) return false;
  for (const auto& [language, text] : record_->locales) {
    if (!text.IsEmpty()) return false;
  }
  return true;
}

bool LocalizableString::IsDeleted() const {
  if (!record_) return false;
  const dp::MutexGuard guard(record_->mutex);
  return record_->deleted;
}

void LocalizableString::SetEnabled(bool enabled) {
  Record& record = MakeRecord();
  const dp::MutexGuard guard(record.mutex);
  record.enabled = enabled;
}

void LocalizableString::SetDeleted(bool deleted) {
  Record& record = MakeRecord();
  const dp::MutexGuard guard(record.mutex);
  record.deleted = deleted;
}

void LocalizableString::CopyLocales(const LocalizableString& from) {
  if (!from.record_ || IsSameRecord(from)) return;
  // One record is locked at a time: two copies in opposite directions must not wait for each other.
  std::map<std::string, Symbol> locales;
  {
    const dp::MutexGuard guard(from.record_->mutex);
    locales = from.record_->locales;
  }
  Record& record = MakeRecord();
  const dp::MutexGuard guard(record.mutex);
  for (const auto& [language, text] : locales) record.locales[language] = text;
}

Symbol LocalizableString::GetText() const {
  if (!record_) return Symbol();
  const std::string language = Localizer::GetCurrentLanguage();
  const dp::MutexGuard guard(record_->mutex);
  const auto found = record_->locales.find(language);
  return found == record_->locales.end() ? record_->sourceText : found->second;
}

Symbol LocalizableString::GetSourceText() const {
  if (!record_) return Symbol();
  const dp::MutexGuard guard(record_->mutex);
  return record_->sourceText;
}

void LocalizableString::SetSourceText(const Symbol& text) {
  Record& record = MakeRecord();
  const dp::MutexGuard guard(record.mutex);
  record.sourceText = text;
}

Symbol LocalizableString::GetKey() const {
  if (!record_) return Symbol();
  const dp::MutexGuard guard(record_->mutex);
  return record_->key;
}

void LocalizableString::SetKey(const Symbol& key) {
  Record& record = MakeRecord();
  const dp::MutexGuard guard(record.mutex);
  record.key = key;
}

void LocalizableString::SetLocaleText(const std::string& language, const Symbol& text) {
  Record& record = MakeRecord();
  const dp::MutexGuard guard(record.mutex);
  record.locales[language] = text;
}

bool LocalizableString::IsSameRecord(const LocalizableString& other) const {
  return record_ && record_ == other.record_;
}

}  // namespace du
