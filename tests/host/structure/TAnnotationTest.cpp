#include <zrk/illustration/TAnnotation.h>

#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PlainTextToMarkdown.h>

#include "../HostFixture.h"

namespace zrtest {

using zrk::illustration::LabelContent;
using zrk::illustration::TAnnotation;
using zrk::illustration::TextProperties;

struct TemplateRecorder final : zrk::illustration::CalloutTemplateObserver {
  void OnTemplateReplaced(const TemplatePtr& changed) override { log.push_back("replaced by " + changed->GetName()); }
  void OnTemplateModified(const TemplatePtr&) override { log.push_back("modified"); }
  Log log;
};

du::SmartPtr<LabelContent> Literal(const std::string& text) {
  return MakeObject<LabelContent>(text, TextProperties());
}

du::SmartPtr<LabelContent> Field(const std::string& group, const std::string& name) {
  return MakeObject<LabelContent>(group, name, TextProperties());
}

class TAnnotationTest : public HostFixture {
protected:
  [[nodiscard]] std::string GetText() const {
    TAnnotation::Contents contents;
    return template_->GetTextContent(contents) ? contents.front()->text : "";
  }

  const TemplatePtr template_ = MakeObject<TAnnotation>();
};

TEST_F(TAnnotationTest, RequirementsFollowTheContents) {
  struct Case {
    const char* name;
    TAnnotation::Contents contents;
    bool itemList, propertyVisitor;
  };
  auto odd = Field("System", "zrITM");
  odd->type = 7;
  const Case cases[] = {
      {"literal that reads like a token", {Literal("System"), nullptr}, false, false},
      {"number", {Field("System", "zrITM")}, true, false},
      {"quantity", {Literal("x"), Field("System", "zrQTY")}, true, false},
      {"other name in the token group", {Field("System", "zritm")}, false, true},
      {"file property", {Field("File", "Title")}, false, false},
      {"part property", {Field("Part", "Mass")}, false, true},
      {"alias of the default group", {Field("__ZRS_PROPERTIES", "Mass")}, false, true},
      {"unknown kind of piece", {odd}, false, false},
  };
  for (const Case& c : cases) {
    template_->SetTextContent(c.contents, true);
    EXPECT_EQ(template_->RequiresItemList(), c.itemList) << c.name;
    EXPECT_EQ(template_->RequiresPropertyVisitor(), c.propertyVisitor) << c.name;
  }
  template_->SetTextContent({Field("System", "zrITM")}, false);
  EXPECT_FALSE(template_->RequiresItemList()) << "no text content";
}

TEST_F(TAnnotationTest, ReplacementAndEditAreToldApartAndUndoable) {
  const auto observer = MakeObject<TemplateRecorder>();
  template_->SetId("T1");
  template_->SetName("old");
  template_->SetTextContent({Literal("a")}, true);
  template_->RegisterObserver(observer);
  const auto copy = MakeObject<TAnnotation>(*template_);
  copy->SetId("T2");
  copy->SetName("new");
  TAnnotation::Contents contents;
  copy->GetTextContent(contents);
  contents.front()->text = "changed";
  EXPECT_EQ(GetText(), "a") << "a copy has pieces of its own";

  const auto operation = MakeOperation();
  template_->SetTextContent({Literal("b")}, true, operation);
  template_->ReplaceBy(*copy, operation);
  RecordOperation(operation);
  EXPECT_EQ(template_->GetId(), "T1");
  EXPECT_EQ(GetText(), "changed");
  Undo();
  EXPECT_EQ(GetText(), "a");
  Redo();
  EXPECT_EQ(GetText(), "changed");
  EXPECT_EQ(observer->log,
            (Log{"modified", "replaced by new", "replaced by old", "modified", "modified", "replaced by new"}));
}

TEST(PlainTextToMarkdownTest, EscapesExactlyTheSpecialCharacters) {
  using zrk::illustration::PlainTextToMarkdown;
  EXPECT_EQ(PlainTextToMarkdown(R"(\`*_{}[]<>#|~)"), R"(\\\`\*\_\{\}\[\]\<\>\#\|\~)");
  EXPECT_EQ(PlainTextToMarkdown("M8x20 (1.5-2) +!\n\xC3\xA9"), "M8x20 (1.5-2) +!\n\xC3\xA9");
}

}  // namespace zrtest
