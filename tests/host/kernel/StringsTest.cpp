#include <map>
#include <string>

#include <gtest/gtest.h>

#include <du/LocalizableString.h>
#include <du/Localizer.h>
#include <du/Symbol.h>

namespace {

using du::LocalizableString;
using du::Localizer;
using du::Symbol;

TEST(SymbolTest, EmptySymbolsAreOneAndOrderIsByTextWhateverTheOrderOfInterning) {
  EXPECT_EQ(Symbol(static_cast<const char*>(nullptr)), Symbol(""));
  EXPECT_NE(Symbol(" "), Symbol::EMPTY);
  const Symbol late("symbol-order-b"), early("symbol-order-a");
  EXPECT_TRUE(Symbol() < early && early < late);
  EXPECT_FALSE(late < early || late < late);
}

class LocalizationTest : public testing::Test {
protected:
  ~LocalizationTest() override {
    Localizer::SetCurrentLanguage("en");
    Localizer::RemoveMessage("test", "1");
  }
};

TEST_F(LocalizationTest, CatalogueAnswersInTheCurrentLanguageOrElseInEnglish) {
  const std::map<std::string, std::string> expected = {
      {"en", "Properties"},       {"de", "Eigenschaften"}, {"fr", "Propriétés"}, {"ja", "プロパティ"},
      {"de-AT", "Eigenschaften"}, {"xx", "Properties"},    {"", "Properties"}};
  const Localizer catalogue("zrbase:zrmodulesStrings");
  for (const auto& [language, text] : expected) {
    Localizer::SetCurrentLanguage(language);
    std::string answer;
    EXPECT_TRUE(catalogue.LocalizeMessage("3206", answer)) << language;
    EXPECT_EQ(answer, text) << language;
  }
  Localizer::SetMessage("test", "1", "de", "nur deutsch");
  const std::pair<const char*, const char*> missing[] = {
      {"zrbase:zrmodulesStrings", "no such message"}, {"no such catalogue", "142"}, {"test", "1"}};
  for (const auto& [name, message] : missing) {
    std::string text = "before";
    EXPECT_FALSE(Localizer(name).LocalizeMessage(message, text));
    EXPECT_EQ(text, "before") << name;
  }
}

TEST_F(LocalizationTest, HandlesShareTheirRecordAndCopiesOfLocalesDoNot) {
  LocalizableString from = LocalizableString::Create("old", "old source"), copy = from;
  copy.SetLocaleText("de", "alt");
  copy.SetDeleted(true);
  EXPECT_FALSE(from.IsEnabled());
  LocalizableString to = LocalizableString::Create("new", "new source");
  to.CopyLocales(from);
  EXPECT_FALSE(to.IsSameRecord(from));
  EXPECT_EQ(to.GetText(), Symbol("new source"));
  Localizer::SetCurrentLanguage("de");
  EXPECT_EQ(to.GetText(), Symbol("alt"));

  LocalizableString empty;
  const LocalizableString copyOfEmpty = empty;
  EXPECT_FALSE(empty.IsEnabled() || empty.IsSameRecord(copyOfEmpty));
  empty.CopyLocales(copyOfEmpty);
  empty.SetLocaleText("de", Symbol());
  EXPECT_TRUE(empty.IsEmpty());
  empty.SetSourceText("text");
  EXPECT_TRUE(copyOfEmpty.IsEmpty());
}

}  // namespace
