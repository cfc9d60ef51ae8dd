#include <zrk/illustration/TAnnotation.h>

#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/PenPool.h>
#include <zrk/illustration/PlainTextToMarkdown.h>

#include "StructureFixture.h"

namespace zrtest {

using zrk::illustration::LabelContent;
using zrk::illustration::PenPool;
using zrk::illustration::TAnnotation;
using zrk::illustration::TextProperties;

struct TemplateRecorder final : zrk::illustration::CalloutTemplateObserver {
  explicit TemplateRecorder(bool isKeen) : keen(isKeen) {}
  bool WantsThumbnails() const override { return keen; }
  void OnTemplateReplaced(const TemplatePtr& changed) override { Note("replaced", changed); }
  void OnTemplateModified(const TemplatePtr& changed) override { Note("modified", changed); }
  void OnThumbnailsLoaded() override { log.push_back("thumbnails"); }

  void Note(const std::string& what, const TemplatePtr& changed) {
    log.push_back(what + (changed->RequiresItemList() ? " item" : ""));
  }

  const bool keen;
  Log log;
};

du::SmartPtr<LabelContent> Literal(const std::string& text) {
  return MakeObject<LabelContent>(text, TextProperties());
}

du::SmartPtr<LabelContent> Field(const std::string& group, const std::string& name) {
  return MakeObject<LabelContent>(group, name, TextProperties());
}

std::string FirstText(const TAnnotation& annotation) {
  TAnnotation::Contents contents;
  return annotation.GetTextContent(contents) && !contents.empty() ? contents.front()->text : "";
}

class TAnnotationTest : public StructureTest {
protected:
  static auto UsePen() { return PenPool::GetPenPool()->UsePen(PenPool::PEN_THIN_STR); }
  static void SetUpTestSuite() { UsePen(); }  // the pool keeps it

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
      {"nothing", {}, false, false},
      {"literal that reads like a token", {Literal("System"), nullptr}, false, false},
      {"number", {Field("System", "zrITM")}, true, false},
      {"quantity", {Literal("x"), Field("System", "zrQTY")}, true, false},
      {"tag", {Field("System", "zrTAG")}, true, false},
      {"other name in the token group", {Field("System", "zritm")}, false, true},
      {"file property", {Field("File", "Title")}, false, false},
      {"part property", {Field("Part", "Mass")}, false, true},
      {"alias of the default group", {Field("__ZRS_PROPERTIES", "Mass")}, false, true},
      {"number and property", {Field("System", "zrITM"), Field("Part", "Mass")}, true, true},
      {"unknown kind of piece", {odd}, false, false},
  };
  for (const Case& c : cases) {
    template_->SetTextContent(c.contents, true);
    EXPECT_EQ(template_->RequiresItemList(), c.itemList) << c.name;
    EXPECT_EQ(template_->RequiresPropertyVisitor(), c.propertyVisitor) << c.name;
  }
  template_->SetTextContent({Field("System", "zrITM")}, false);
  EXPECT_FALSE(template_->RequiresItemList()) << "no text content";
  TAnnotation::Contents contents{Literal("old")};
  EXPECT_FALSE(template_->GetTextContent(contents));
  EXPECT_TRUE(contents.empty());
  template_->SetTextContent({}, true);
  EXPECT_TRUE(template_->GetTextContent(contents));
}

TEST_F(TAnnotationTest, CopyIsPrivate) {
  const auto pen = UsePen();
  template_->SetId("T1");
  template_->SetLeaderPen(pen);
  template_->SetTextContent({Literal("a")}, true);
  template_->RegisterObserver(MakeObject<TemplateRecorder>(true));
  template_->RemoveUser();
  template_->AddUser();
  EXPECT_EQ(template_->GetUserCount(), 1u) << "never below zero";

  const auto copy = MakeObject<TAnnotation>(*template_);
  EXPECT_EQ(copy->GetId(), "T1");
  EXPECT_EQ(copy->GetLeaderPen(), pen);
  EXPECT_EQ(copy->GetObserverCount(), 0u);
  EXPECT_EQ(copy->GetUserCount(), 0u);
  TAnnotation::Contents contents;
  copy->GetTextContent(contents);
  contents.front()->text = "changed";
  copy->SetIsMarkdown(true);
  EXPECT_EQ(FirstText(*template_), "a");
  EXPECT_FALSE(template_->IsMarkdown());
}

TEST_F(TAnnotationTest, ReplacementAndEditAreToldApartAndUndoable) {
  const auto observer = MakeObject<TemplateRecorder>(true);
  template_->SetId("T1");
  template_->SetName("Old");
  template_->SetTextContent({Literal("a")}, true);
  template_->RegisterObserver(observer);
  const auto other = MakeObject<TAnnotation>();
  other->SetId("T2");
  other->SetName("New");
  other->SetTextContent({Field("System", "zrITM")}, true);

  const auto operation = MakeOperation();
  template_->SetTextContent({Literal("b")}, true, operation);
  template_->ReplaceBy(*other, operation);
  RecordOperation(operation);
  EXPECT_EQ(observer->log, (Log{"modified", "replaced item"}));
  EXPECT_EQ(template_->GetId(), "T1");
  EXPECT_EQ(template_->GetName(), "New");

  observer->log.clear();
  Undo();
  EXPECT_EQ(observer->log, (Log{"replaced", "modified"}));
  EXPECT_EQ(FirstText(*template_), "a");
  EXPECT_EQ(template_->GetName(), "Old");
  Redo();
  EXPECT_TRUE(template_->RequiresItemList());
}

TEST_F(TAnnotationTest, ThumbnailsReachOnlyWhoWantsThem) {
  const auto keen = MakeObject<TemplateRecorder>(true);
  const auto other = MakeObject<TemplateRecorder>(false);
  template_->RegisterObserver(keen);
  template_->RegisterObserver(other);
  template_->NotifyThumbnailsLoaded();
  template_->UnregisterObserver(keen);
  template_->NotifyThumbnailsLoaded();
  EXPECT_EQ(keen->log, Log{"thumbnails"});
  EXPECT_TRUE(other->log.empty());
}

TEST(PlainTextToMarkdownTest, EscapesExactlyTheSpecialCharacters) {
  using zrk::illustration::PlainTextToMarkdown;
  EXPECT_EQ(PlainTextToMarkdown(R"(\`*_{}[]<>#|~)"), R"(\\\`\*\_\{\}\[\]\<\>\#\|\~)");
  EXPECT_EQ(PlainTextToMarkdown("M8x20 (1.5-2) +!\n\xC3\xA9"), "M8x20 (1.5-2) +!\n\xC3\xA9");
}

}  // namespace zrtest
