#include <du/Localizer.h>

#include <map>
#include <utility>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>

namespace du {

namespace {

using Texts = std::map<std::string, std::string>;  // by language
using Catalogue = std::map<std::string, Texts>;    // by message id

const Catalogue& GetBuiltInMessages() {
  static const Catalogue messages{
      {"142",
       {{"en", "Create Callouts"},
        {"de", "Positionsnummern erstellen"},
        {"fr", "Créer des repères"},
        {"ja", "バルーンを作成"}}},
      {"850", {{"en", "Text"}, {"de", "Text"}, {"fr", "Texte"}, {"ja", "テキスト"}}},
      {"3206", {{"en", "Properties"}, {"de", "Eigenschaften"}, {"fr", "Propriétés"}, {"ja", "プロパティ"}}},
  };
  return messages;
}

struct Store {
  dp::Mutex mutex;
  std::string language ZR_GUARDED_BY(mutex) = "en";
  std::map<std::string, Catalogue> catalogues ZR_GUARDED_BY(mutex) = {
      {"zrbase:zrmodulesStrings", GetBuiltInMessages()}};
};

Store& GetStore() {
  static Store* store = new Store;
  return *store;
}

const std::string* FindText(const Texts& texts, const std::string& language) {
  const std::string baseLanguage = language.substr(0, language.find_first_of("-_"));
  for (const std::string& candidate : {language, baseLanguage, std::string("en")}) {
    const auto found = texts.find(candidate);
    if (found != texts.end()) return &found->second;
  }
  return nullptr;
}

}  // namespace

Localizer::Localizer(const std::string& catalogue) : catalogue_(catalogue) {}

bool Localizer::LocalizeMessage(const std::string& id, std::string& text) const {
  Store& store = GetStore();
  const dp::MutexGuard guard(store.mutex);
  const auto catalogue = store.catalogues.find(catalogue_);
  if (catalogue == store.catalogues.end()) return false;
  const auto message = catalogue->second.find(id);
  if (message == catalogue->second.end()) return false;
  const std::string* found = FindText(message->second, store.language);
  if (found) text = *found;
  return found != nullptr;
}

void Localizer::SetMessage(const std::string& catalogue, const std::string& id, const std::string& language,
                           const std::string& text) {
  Store& store = GetStore();
  const dp::MutexGuard guard(store.mutex);
  store.catalogues[catalogue][id][language] = text;
}

void Localizer::RemoveMessage(const std::string& catalogue, const std::string& id) {
  Store& store = GetStore();
  const dp::MutexGuard guard(store.mutex);
  const auto found = store.catalogues.find(catalogue);
  if (found != store.catalogues.end()) found->second.erase(id);
}

void Localizer::SetCurrentLanguage(const std::string& language) {
  Store& store = GetStore();
  const dp::MutexGuard guard(store.mutex);
  store.language = language;
}

std::string Localizer::GetCurrentLanguage() {
  Store& store = GetStore();
  const dp::MutexGuard guard(store.mutex);
  return store.language;
}

}  // namespace du
