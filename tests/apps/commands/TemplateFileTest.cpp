#include "commands/TemplateFile.h"

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

struct RefusedTemplate {
  const char* name;
  std::string json;
  const char* expected;
};

std::string WithContents(const std::string& contents) {
  return R"({"id":"i","name":"n","contents":)" + contents + "}";
}

std::string With(const std::string& field) {
  return R"({"id":"i","name":"n","contents":[{"name":"p"}],)" + field + "}";
}

class RefusedTemplateTest : public testing::TestWithParam<RefusedTemplate> {};

TEST_P(RefusedTemplateTest, SaysWhere) {
  std::string error;
  EXPECT_FALSE(ParseTemplate(GetParam().json, error));
  EXPECT_NE(error.find(GetParam().expected), std::string::npos) << error;
  EXPECT_EQ(error.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedTemplateTest,
    testing::Values(
        RefusedTemplate{"Empty", "", "is not JSON"}, RefusedTemplate{"NotJson", "{\n\"id\": oops}", "line 2"},
        RefusedTemplate{"NoObject", "[1]", "is not an object"},
        RefusedTemplate{"NoId", R"({"name":"n"})", "id is missing"},
        RefusedTemplate{"EmptyId", R"({"id":"","name":"n","contents":[]})", "id is empty"},
        RefusedTemplate{"NumberAsName", R"({"id":"i","name":7})", "name is not a text"},
        RefusedTemplate{"NoContents", R"({"id":"i","name":"n"})", "contents is missing"},
        RefusedTemplate{"ContentsNoList", WithContents("{}"), "contents is not a list"},
        RefusedTemplate{"ContentsEmpty", WithContents("[]"), "contents is empty"},
        RefusedTemplate{"ContentNoObject", WithContents("[{\"text\":\"a\"},3]"), "contents[1] is not an object"},
        RefusedTemplate{"ContentEmpty", WithContents("[{}]"), "contents[0] has neither"},
        RefusedTemplate{"ContentNoName", WithContents("[{\"group\":\"System\"}]"), "contents[0].name is missing"},
        RefusedTemplate{"ContentTextAndName", WithContents("[{\"text\":\"a\",\"name\":\"b\"}]"), "contents[0].name"},
        RefusedTemplate{"ContentDisplay", WithContents("[{\"name\":\"a\",\"display\":\"value\"}]"),
                        "contents[0].display is \"value\" but must be one of \"Value\", \"Name\""},
        RefusedTemplate{"ContentLevel", WithContents("[{\"name\":\"a\",\"level\":\"root\"}]"), "contents[0].level"},
        RefusedTemplate{"UnknownField", With(R"("colour":"red")"), "colour is not a known field"},
        RefusedTemplate{"MarkdownNoBool", With(R"("markdown":"yes")"), "markdown is neither true nor false"},
        RefusedTemplate{"PenNoObject", With(R"("leaderPen":1)"), "leaderPen is not an object"},
        RefusedTemplate{"PenWithoutWeight", With(R"("leaderPen":{"unit":"mm"})"), "leaderPen.weight is missing"},
        RefusedTemplate{"PenNegative", With(R"("leaderPen":{"weight":-1})"), "leaderPen.weight is not above 0"},
        RefusedTemplate{"PenUnit", With(R"("leaderPen":{"weight":1,"unit":"px"})"), "leaderPen.unit is \"px\""},
        RefusedTemplate{"TranslationLanguage", With(R"("translations":{"xx":"a"})"), "translations.xx"},
        RefusedTemplate{"TranslationNoText", With(R"("translations":{"de":1})"), "translations.de is not a text"},
        RefusedTemplate{"TranslationPlaceholder", With(R"("translations":{"de":"{1}"})"), "translations.de has {1}"},
        RefusedTemplate{"TranslationOpen", With(R"("translations":{"de":"{0"})"), "a '{' without '}'"}),
    [](const auto& entry) { return entry.param.name; });

TEST(TemplateFileTest, ReadsEveryField) {
  std::string error;
  const auto definition = ParseTemplate(
      R"({"id":"pos","name":"Position","markdown":true,"itemTemplate":true,
          "contents":[{"text":"Item "},{"group":"System","name":"zrITM","display":"Value","level":""},
                      {"group":"","name":"material","display":"Name","level":"Root"}],
          "leaderPen":{"weight":0.35,"unit":"pt"},"translations":{"de":"Pos. {0} {1}"}})",
      error);
  ASSERT_TRUE(definition) << error;
  EXPECT_TRUE(definition->markdown && definition->itemTemplate);
  ASSERT_EQ(definition->contents.size(), 3u);
  EXPECT_FALSE(definition->contents[0].isProperty);
  EXPECT_EQ(definition->contents[0].text, "Item ");
  EXPECT_TRUE(definition->contents[1].isProperty);
  EXPECT_EQ(definition->contents[1].text, "System");
  EXPECT_EQ(definition->contents[2].display, "Name");
  EXPECT_EQ(definition->contents[2].level, "Root");
  EXPECT_EQ(definition->leaderPen->weight, 0.35);
  EXPECT_EQ(definition->leaderPen->unit, "pt");
  EXPECT_EQ(definition->translations.at("de"), "Pos. {0} {1}");
  EXPECT_EQ(SourcePattern(*definition), "Item {0}{1}");
}

TEST(TemplateFileTest, LoadingNamesTheFile) {
  std::string error;
  EXPECT_FALSE(LoadTemplate("/nowhere/t.json", error));
  EXPECT_EQ(error, "/nowhere/t.json: cannot be read");
  EXPECT_FALSE(LoadTemplate("/", error));
  EXPECT_EQ(error, "/: cannot be read");
  EXPECT_TRUE(LoadTemplate("number-name", error));
}

}  // namespace
}  // namespace zrfigure
