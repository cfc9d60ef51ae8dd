// The free functions over scenes: assembly shapes, file properties, callout templates.

#include <zrannotations/AssemblyShapes.h>
#include <zrannotations/CalloutLabelFileProperties.h>
#include <zrannotations/CalloutTemplates.h>

#include "AnnotationFixture.h"

namespace zrtest {

namespace {

class SceneFunctionsTest : public AnnotationFixture {};

TEST_F(SceneFunctionsTest, AssemblyShapesAreThoseOfEverythingBelow) {
  using Shapes = std::set<ShapePtr>;
  struct Case {
    SbomPtr instance;
    Shapes expected;
  };
  for (const Case& testCase : {Case{root_, {housing_, shaft_, gear_}}, Case{drive_, {shaft_, gear_}},
                               Case{gear_->GetInstance()->GetSbomInstance(), {gear_}}, Case{nullptr, {}}}) {
    Shapes shapes;
    zrannotations::GetShapeInstancesForAssembly(scene_, testCase.instance, shapes);
    EXPECT_EQ(shapes, testCase.expected);
    Shapes none;
    zrannotations::GetShapeInstancesForAssembly(nullptr, testCase.instance, none);
    EXPECT_TRUE(none.empty());
  }
}

TEST_F(SceneFunctionsTest, AssemblyIsVisibleWhileAnythingBelowIs) {
  EXPECT_TRUE(zrannotations::IsPartOrAssemblyVisible(scene_, drive_));
  shaft_->SetVisible(false);
  EXPECT_TRUE(zrannotations::IsPartOrAssemblyVisible(scene_, drive_));
  EXPECT_FALSE(zrannotations::IsPartOrAssemblyVisible(scene_, shaft_->GetInstance()->GetSbomInstance()));
  gear_->SetVisible(false);
  EXPECT_FALSE(zrannotations::IsPartOrAssemblyVisible(scene_, drive_));
  EXPECT_TRUE(zrannotations::IsPartOrAssemblyVisible(scene_, root_));
  EXPECT_FALSE(zrannotations::IsPartOrAssemblyVisible(nullptr, root_));
  EXPECT_FALSE(zrannotations::IsPartOrAssemblyVisible(scene_, nullptr));
}

TEST_F(SceneFunctionsTest, FilePropertiesBelongToOneSceneAndOneGroup) {
  const auto other = zrk::MakeObject<zrk::ShapeScene>();
  zrannotations::SetFileProperty(scene_, "File", "Title", "Gearbox");
  zrannotations::SetFileProperty(scene_, "File", "Title", "Gearbox 2");
  zrannotations::SetFileProperty(scene_, "Other", "Title", "no");
  zrannotations::SetFileProperty(nullptr, "File", "Title", "no");
  struct Case {
    const char* group;
    const char* name;
    const char* shownName;
    const char* value;
  };
  for (const Case& testCase : {Case{"File", "Title", "Title", "Gearbox 2"}, Case{"File", "Author", "Author", ""},
                               Case{"file", "Title", "", ""}, Case{"Properties", "Title", "", ""}}) {
    EXPECT_EQ(zrannotations::GetCalloutLabelFilePropertyName(testCase.group, testCase.name), testCase.shownName);
    EXPECT_EQ(zrannotations::GetCalloutLabelFilePropertyValue(scene_, testCase.group, testCase.name), testCase.value);
    EXPECT_EQ(zrannotations::GetCalloutLabelFilePropertyValue(other, testCase.group, testCase.name), "");
    EXPECT_EQ(zrannotations::GetCalloutLabelFilePropertyValue(nullptr, testCase.group, testCase.name), "");
  }
}

TEST_F(SceneFunctionsTest, TemplatesAreListedOnceInOrder) {
  const TemplatePtr first = MakeTemplate("item");
  const TemplatePtr second = MakeTemplate("literal");
  for (const TemplatePtr& added : {first, second, first, TemplatePtr()}) zrannotations::AddCalloutTemplate(added);
  std::vector<TemplatePtr> templates{second};
  zrannotations::GetCalloutTemplates(templates, true, false);
  zrannotations::ClearCalloutTemplates();
  zrannotations::GetCalloutTemplates(templates, true, false);
  EXPECT_EQ(templates, std::vector<TemplatePtr>({second, first, second}));
}

}  // namespace

}  // namespace zrtest
