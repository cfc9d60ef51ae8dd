// Template texts as patterns for translators, and back.
#include <algorithm>

#include "support/SceneFixture.h"

namespace {

using zrtest::Contents;
using zrtest::TemplateBuilder;
using TemplatePatternTest = zrtest::SceneFixture;

/// Literals as they stand, properties as <group/name/display/level>.
std::string Spell(const Contents& contents) {
  std::string spelled;
  for (const auto& content : contents) {
    spelled += content->type == 0
                   ? "'" + content->text + "'"
                   : "<" + content->text + "/" + content->name + "/" + content->display + "/" + content->level + ">";
  }
  return spelled;
}

TEST_F(TemplatePatternTest, PropertiesAreNumberedAndLiteralsKept) {
  const struct {
    TemplateBuilder contents;
    bool hasLiteral;
    const char* pattern;
  } cases[] = {
      {TemplateBuilder().Literal("Note"), true, "Note"},
      {TemplateBuilder().Token("zrITM").Token("zrQTY"), false, "{0}{1}"},
      {TemplateBuilder().Literal("Qty ").Token("zrQTY").Literal(": ").Property("G", "N"), true, "Qty {0}: {1}"},
      {TemplateBuilder().OfType(7, "x").Token("zrITM"), true, "x{0}"},  // other kinds count as literals
      {TemplateBuilder(), true, "present text"}};
  du::Symbol pattern("left over");
  EXPECT_FALSE(engine_->GetTemplateLocalizableString(nullptr, pattern));
  EXPECT_FALSE(engine_->GetTemplateLocalizableString(MakeCallout(nullptr, {}), pattern));
  EXPECT_EQ(pattern.GetString(), "left over");
  for (const auto& tested : cases) {
    const auto callout = MakeCallout(tested.contents.Build(), {});
    callout->SetText("present text", false);
    EXPECT_EQ(engine_->GetTemplateLocalizableString(callout, pattern), tested.hasLiteral);
    EXPECT_EQ(pattern.GetString(), tested.pattern);
  }
}

TEST_F(TemplatePatternTest, ReadingRebuildsTheContentOverTheTemplatesProperties) {
  const std::string a = "<A/a/Name/Root>", b = "<B/b//>";
  const struct {
    const char* pattern;
    std::string contents;
  } cases[] = {{"", ""},
               {"Note", "'Note'"},
               {"Qty {1}: {0}", "'Qty '" + b + "': '" + a},
               {"{0}{1}", a + b},
               {"{0} {0}", a + "' '" + a},
               {"{1} pcs", b + "' pcs'"},
               {"{x}", a},
               {"{}", a},
               {"{1st}", b},
               {"a{2}b", "'a''b'"},
               {"a{-1}b", "'a''b'"},
               {"a{99999999999999999999}b", "'a''b'"},
               {"a{", "'a'"},
               {"{", ""},
               {"a{1", "'a'" + b + "'1'"},
               {"{0 and", a + "'d'"},
               {"{{", a},
               {"{{1}", a},
               {"a}b", "'a}b'"}};
  const Contents contents =
      TemplateBuilder().Literal("old ").Property("A", "a", "Name", "Root").Literal(" old").Property("B", "b").Pieces();
  contents[0]->textProperties.fontFace = "Lettering";
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.pattern);
    Contents localized = {contents[1]};  // appended to, not cleared
    engine_->LocalizeTemplateText(du::Symbol(tested.pattern), contents, localized);
    EXPECT_EQ(Spell(localized), a + tested.contents);
    for (std::size_t i = 0; i < localized.size(); ++i) {
      EXPECT_EQ(localized[i]->textProperties.fontFace, localized[i]->type == 0 ? "Lettering" : "");
      EXPECT_EQ(std::count(contents.begin(), contents.end(), localized[i]), i == 0 ? 1 : 0);
    }
  }
  Contents localized;
  engine_->LocalizeTemplateText("text {0}", {}, localized);
  EXPECT_TRUE(localized.empty());
}

}  // namespace
