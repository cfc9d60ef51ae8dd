#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <du/LocalizableString.h>
#include <du/Localizer.h>
#include <du/Symbol.h>
#include <du/Tracer.h>

namespace {

using du::LocalizableString;
using du::Localizer;
using du::Symbol;

constexpr const char* kCatalogue = "zrbase:zrmodulesStrings";

TEST(SymbolTest, EmptySymbolsAreOneAndOrderIsByTextWhateverTheOrderOfInterning) {
  EXPECT_EQ(Symbol(), Symbol(""));
  EXPECT_EQ(Symbol(static_cast<const char*>(nullptr)), Symbol::EMPTY);
  EXPECT_EQ(Symbol::EMPTY.GetString(), "");
  EXPECT_NE(Symbol(" "), Symbol::EMPTY);
  const Symbol late("symbol-order-b"), early("symbol-order-a");
  EXPECT_TRUE(early < late);
  EXPECT_FALSE(late < early);
  EXPECT_FALSE(late < late);
  EXPECT_TRUE(Symbol() < early);
}

TEST(SymbolTest, ThreadsInternOneEntry) {
  std::vector<Symbol> symbols(4);
  std::vector<std::thread> threads;
  for (Symbol& symbol : symbols) {
    threads.emplace_back([&symbol] {
      for (int i = 0; i < 200; ++i) symbol = Symbol("symbol-threads-" + std::to_string(i));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Symbol& symbol : symbols) EXPECT_EQ(symbol, symbols.front());
}

class LocalizationTest : public testing::Test {
protected:
  ~LocalizationTest() override { Localizer::SetCurrentLanguage("en"); }
};

TEST_F(LocalizationTest, CatalogueAnswersInTheCurrentLanguageOrElseInEnglish) {
  const std::map<std::string, std::string> expected = {
      {"en", "Properties"},       {"de", "Eigenschaften"}, {"fr", "Propriétés"}, {"ja", "プロパティ"},
      {"de-AT", "Eigenschaften"}, {"xx", "Properties"},    {"", "Properties"}};
  for (const auto& [language, text] : expected) {
    Localizer::SetCurrentLanguage(language);
    std::string answer;
    EXPECT_TRUE(Localizer(kCatalogue).LocalizeMessage("3206", answer)) << language;
    EXPECT_EQ(answer, text) << language;
  }
}

TEST_F(LocalizationTest, MissingMessageLeavesTheTextAlone) {
  std::string text = "before";
  EXPECT_FALSE(Localizer(kCatalogue).LocalizeMessage("no such message", text));
  EXPECT_FALSE(Localizer("no such catalogue").LocalizeMessage("142", text));
  Localizer::SetMessage("test", "1", "de", "nur deutsch");
  EXPECT_FALSE(Localizer("test").LocalizeMessage("1", text));
  EXPECT_EQ(text, "before");
  Localizer::SetMessage("test", "1", "en", "english");
  EXPECT_TRUE(Localizer("test").LocalizeMessage("1", text));
  Localizer::RemoveMessage("test", "1");
  EXPECT_FALSE(Localizer("test").LocalizeMessage("1", text));
  EXPECT_EQ(text, "english");
}

TEST_F(LocalizationTest, HandlesShareTheirRecordAndCopiesOfLocalesDoNot) {
  LocalizableString from = LocalizableString::Create("old", "old source"), copy = from;
  EXPECT_TRUE(from.IsEnabled());
  copy.SetLocaleText("de", "alt");
  copy.SetDeleted(true);
  EXPECT_TRUE(from.IsDeleted());
  EXPECT_FALSE(from.IsEnabled());
  LocalizableString to = LocalizableString::Create("new", "new source");
  to.CopyLocales(from);
  EXPECT_FALSE(to.IsSameRecord(from));
  EXPECT_FALSE(to.IsDeleted());
  EXPECT_EQ(to.GetText(), Symbol("new source"));
  Localizer::SetCurrentLanguage("de");
  EXPECT_EQ(from.GetText(), Symbol("alt"));
  EXPECT_EQ(to.GetText(), Symbol("alt"));
}

TEST_F(LocalizationTest, DefaultHandleIsEmptyDisabledAndItsOwn) {
  LocalizableString string;
  const LocalizableString copy = string;
  EXPECT_FALSE(string.IsEnabled());
  EXPECT_FALSE(string.IsSameRecord(copy));
  string.CopyLocales(copy);
  string.SetLocaleText("de", Symbol());
  EXPECT_TRUE(string.IsEmpty());
  string.SetSourceText("text");
  EXPECT_FALSE(string.IsEmpty());
  EXPECT_TRUE(copy.IsEmpty());
}

TEST(TracerTest, KeepsFormattedEntriesUntilTaken) {
  (void)du::Tracer::TakeEntries();
  du::Tracer::Trace(2, "module", "category", "%s has %d", "part", 7);
  du::Tracer::Trace(1, "module", "category", "%s", "");
  const auto entries = du::Tracer::TakeEntries();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].text, "part has 7");
  EXPECT_EQ(entries[0].level, 2);
  EXPECT_EQ(entries[1].text, "");
  EXPECT_TRUE(du::Tracer::TakeEntries().empty());
}

}  // namespace
