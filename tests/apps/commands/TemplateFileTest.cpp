#include "commands/TemplateFile.h"

#include <tuple>

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

TEST(TemplateFileTest, RefusedTemplatesSayWhere) {
  const auto contents = [](const std::string& list) { return R"({"id":"i","name":"n","contents":)" + list + "}"; };
  const auto with = [&](const std::string& field) { return contents(R"([{"name":"p"}],)" + field); };
  const std::pair<std::string, const char*> refused[] = {
      {"", "is not JSON"},
      {"{\n\"id\": oops}", "line 2"},
      {"[1]", "is not an object"},
      {R"({"name":"n"})", "id is missing"},
      {R"({"id":"","name":"n","contents":[]})", "id is empty"},
      {R"({"id":"i","name":7})", "name is not a text"},
      {R"({"id":"i","name":"n"})", "contents is missing"},
      {contents("{}"), "contents is not a list"},
      {contents("[]"), "contents is empty"},
      {contents(R"([{"text":"a"},3])"), "contents[1] is not an object"},
      {contents("[{}]"), "contents[0] has neither"},
      {contents(R"([{"group":"System"}])"), "contents[0].name is missing"},
      {contents(R"([{"text":"a","name":"b"}])"), "contents[0].name"},
      {contents(R"([{"name":"a","display":"value"}])"),
       "contents[0].display is \"value\" but must be one of \"Value\", \"Name\""},
      {contents(R"([{"name":"a","level":"root"}])"), "contents[0].level"},
      {with(R"("colour":"red")"), "colour is not a known field"},
      {with(R"("markdown":"yes")"), "markdown is neither true nor false"},
      {with(R"("leaderPen":1)"), "leaderPen is not an object"},
      {with(R"("leaderPen":{"unit":"mm"})"), "leaderPen.weight is missing"},
      {with(R"("leaderPen":{"weight":-1})"), "leaderPen.weight is not above 0"},
      {with(R"("leaderPen":{"weight":1,"unit":"px"})"), "leaderPen.unit is \"px\""},
      {with(R"("translations":{"xx":"a"})"), "translations.xx"},
      {with(R"("translations":{"de":1})"), "translations.de is not a text"},
      {with(R"("translations":{"de":"{1}"})"), "translations.de has {1}"},
      {with(R"("translations":{"de":"{0"})"), "a '{' without '}'"}};
  for (const auto& [json, expected] : refused) {
    std::string error;
    EXPECT_FALSE(ParseTemplate(json, error)) << json;
    EXPECT_NE(error.find(expected), std::string::npos) << error;
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
  }
}

TEST(TemplateFileTest, ReadsEveryField) {
  std::string error;
  const auto definition = ParseTemplate(
      R"({"id":"pos","name":"Position","markdown":true,"itemTemplate":true,
          "contents":[{"text":"Item "},{"group":"System","name":"zrITM","display":"Value","level":""},
                      {"group":"","name":"material","display":"Name","level":"Root"}],
          "leaderPen":{"weight":0.35,"unit":"pt"},"translations":{"de":"Pos. {0} {1}"}})",
      error);
  ASSERT_TRUE(definition && definition->contents.size() == 3 && definition->leaderPen) << error;
  EXPECT_TRUE(definition->markdown && definition->itemTemplate);
  const auto &number = definition->contents[1], &material = definition->contents[2];
  EXPECT_EQ(std::tuple(number.text, material.display, material.level), std::tuple("System", "Name", "Root"));
  EXPECT_EQ(std::tuple(definition->leaderPen->weight, definition->leaderPen->unit), std::tuple(0.35, "pt"));
  EXPECT_EQ(definition->translations.at("de"), "Pos. {0} {1}");
  EXPECT_EQ(SourcePattern(*definition), "Item {0}{1}");
}

}  // namespace
}  // namespace zrfigure
