#pragma once

#include <string>

#include <du/Export.h>

namespace du {

/// Looks messages up in a catalogue by id, in the current language. The language is one for the whole process, at
/// first "en". The catalogue "zrbase:zrmodulesStrings" is built in, in English, German, French and Japanese.
/// [any-thread]
class ZR_HOST_API Localizer {
public:
  explicit Localizer(const std::string& catalogue);

  /// Stores the message in the current language, in its base language ("de" for "de-AT") or in English, whichever is
  /// found first. False, with `text` untouched, when the catalogue or the id is unknown.
  bool LocalizeMessage(const std::string& id, std::string& text) const;

  static void SetMessage(const std::string& catalogue, const std::string& id, const std::string& language,
                         const std::string& text);
  /// Removes the message in every language.
  static void RemoveMessage(const std::string& catalogue, const std::string& id);
  /// Notifies nobody: World::ChangeLanguage does.
  static void SetCurrentLanguage(const std::string& language);
  [[nodiscard]] static std::string GetCurrentLanguage();

private:
  std::string catalogue_;
};

}  // namespace du
