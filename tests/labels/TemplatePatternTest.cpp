// Template texts as patterns for translators, and back.
#include <zrk/MakeObject.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::Contents;
using zrtest::SceneFixture;
using zrtest::TemplateBuilder;

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

struct PatternCase {
  const char* name;
  TemplateBuilder contents;
  bool hasLiteral;
  std::string pattern;
};

class TemplatePatternTest : public SceneFixture {
protected:
  const zrtest::Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
};

class PatternOfTemplateTest : public TemplatePatternTest, public ::testing::WithParamInterface<PatternCase> {};

TEST_P(PatternOfTemplateTest, NumbersPropertiesAndKeepsLiterals) {
  const auto callout = MakeCallout(GetParam().contents.Build(), bolt_);
  du::Symbol pattern("left over");
  EXPECT_EQ(engine_->GetTemplateLocalizableString(callout, pattern), GetParam().hasLiteral);
  EXPECT_EQ(pattern.GetString(), GetParam().pattern);
}

INSTANTIATE_TEST_SUITE_P(
    Templates, PatternOfTemplateTest,
    ::testing::Values(
        PatternCase{"LiteralOnly", TemplateBuilder().Literal("Note"), true, "Note"},
        PatternCase{"PropertiesOnly", TemplateBuilder().Token("zrITM").Token("zrQTY"), false, "{0}{1}"},
        PatternCase{"Mixed", TemplateBuilder().Literal("Qty ").Token("zrQTY").Literal(": ").Property("G", "N"), true,
                    "Qty {0}: {1}"},
        PatternCase{"OtherKindsCountAsLiterals", TemplateBuilder().OfType(7, "x").Token("zrITM"), true, "x{0}"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(TemplatePatternTest, WithoutContentTheTextIsThePatternAndWithoutTemplateThereIsNone) {
  const auto callout = MakeCallout(TemplateBuilder().Build(), bolt_);
  callout->SetText("present text", false);
  du::Symbol pattern("left over");
  EXPECT_FALSE(engine_->GetTemplateLocalizableString(nullptr, pattern));
  EXPECT_FALSE(engine_->GetTemplateLocalizableString(MakeCallout(nullptr, bolt_), pattern));
  EXPECT_EQ(pattern.GetString(), "left over");
  EXPECT_TRUE(engine_->GetTemplateLocalizableString(callout, pattern));
  EXPECT_EQ(pattern.GetString(), "present text");
}

struct ReadingCase {
  const char* name;
  std::string pattern;
  std::string contents;
};

class ReadingTest : public TemplatePatternTest, public ::testing::WithParamInterface<ReadingCase> {};

TEST_P(ReadingTest, RebuildsTheContentOverTheTemplatesProperties) {
  const Contents contents =
      TemplateBuilder().Literal("old ").Property("A", "a", "Name", "Root").Literal(" old").Property("B", "b").Pieces();
  contents[0]->textProperties.fontFace = "Lettering";
  Contents localized = {contents[1]};  // appended to, not cleared
  engine_->LocalizeTemplateText(du::Symbol(GetParam().pattern), contents, localized);
  ASSERT_FALSE(localized.empty());
  EXPECT_EQ(localized[0], contents[1]);
  localized.erase(localized.begin());
  EXPECT_EQ(Spell(localized), GetParam().contents);
  for (const auto& content : localized) {
    EXPECT_EQ(content->textProperties.fontFace, content->type == 0 ? "Lettering" : "");
    for (const auto& original : contents) EXPECT_NE(content, original);
  }
}

constexpr const char* kA = "<A/a/Name/Root>";
constexpr const char* kB = "<B/b//>";

INSTANTIATE_TEST_SUITE_P(
    Patterns, ReadingTest,
    ::testing::Values(
        ReadingCase{"Empty", "", ""}, ReadingCase{"LiteralOnly", "Note", "'Note'"},
        ReadingCase{"Reordered", "Qty {1}: {0}", "'Qty '" + std::string(kB) + "': '" + kA},
        ReadingCase{"Adjacent", "{0}{1}", std::string(kA) + kB},
        ReadingCase{"Twice", "{0} {0}", std::string(kA) + "' '" + kA},
        ReadingCase{"TrailingText", "{1} pcs", std::string(kB) + "' pcs'"}, ReadingCase{"LetterReadsAsNull", "{x}", kA},
        ReadingCase{"NothingReadsAsNull", "{}", kA}, ReadingCase{"DigitsThenLetters", "{1st}", kB},
        ReadingCase{"BeyondTheCount", "a{2}b", "'a''b'"}, ReadingCase{"Negative", "a{-1}b", "'a''b'"},
        ReadingCase{"Huge", "a{99999999999999999999}b", "'a''b'"}, ReadingCase{"BraceAtTheEnd", "a{", "'a'"},
        ReadingCase{"BraceAlone", "{", ""}, ReadingCase{"Unclosed", "a{1", "'a'" + std::string(kB) + "'1'"},
        ReadingCase{"UnclosedBeforeText", "{0 and", kA + std::string("'d'")}, ReadingCase{"TwoBraces", "{{", kA},
        ReadingCase{"NestedBraces", "{{1}", kA}, ReadingCase{"ClosingBraceIsText", "a}b", "'a}b'"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(TemplatePatternTest, ATemplateWithoutContentLocalizesToNothing) {
  Contents localized;
  engine_->LocalizeTemplateText("text {0}", {}, localized);
  EXPECT_TRUE(localized.empty());
}

}  // namespace
