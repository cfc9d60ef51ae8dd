#pragma once

#include <memory>
#include <string>

#include <du/Export.h>
#include <du/Symbol.h>

namespace du {

/// Handle on a shared record {key, source text, language -> text, enabled, deleted}: copies share the record, so a flag
/// set through one copy reaches every holder. A default handle has no record yet; the first setter makes one. The
/// record is thread-safe, one handle is not.
class ZR_HOST_API LocalizableString {
public:
  /// Empty and disabled.
  LocalizableString();
  LocalizableString(const LocalizableString& other);
  LocalizableString& operator=(const LocalizableString& other);
  ~LocalizableString();

  /// A handle on a new, enabled record: localisation is set up for that text.
  [[nodiscard]] static LocalizableString Create(const Symbol& key, const Symbol& sourceText);

  /// Localisation is set up and the record is not deleted.
  [[nodiscard]] bool IsEnabled() const;
  /// Neither a source text nor a text of any language.
  [[nodiscard]] bool IsEmpty() const;
  [[nodiscard]] bool IsDeleted() const;
  void SetEnabled(bool enabled);
  void SetDeleted(bool deleted);
  /// Copies the texts of all languages; nothing when both handles are on one record.
  void CopyLocales(const LocalizableString& from);

  /// The text of the localizer's current language, or the source text when that language has none.
  [[nodiscard]] Symbol GetText() const;
  [[nodiscard]] Symbol GetSourceText() const;
  void SetSourceText(const Symbol& text);
  [[nodiscard]] Symbol GetKey() const;
  void SetKey(const Symbol& key);
  void SetLocaleText(const std::string& language, const Symbol& text);
  [[nodiscard]] bool IsSameRecord(const LocalizableString& other) const;

private:
  struct Record;
  Record& MakeRecord();

  std::shared_ptr<Record> record_;
};

}  // namespace du
