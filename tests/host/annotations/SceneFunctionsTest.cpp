// The free functions over scenes: assembly shapes, file properties, callout templates.

#include <zrannotations/AssemblyShapes.h>
#include <zrannotations/CalloutLabelFileProperties.h>
#include <zrannotations/CalloutTemplates.h>

#include "AnnotationFixture.h"

namespace zrtest {

class SceneFunctionsTest : public AnnotationFixture {};

TEST_F(SceneFunctionsTest, AssemblyShapesAndVisibilityAreThoseOfEverythingBelow) {
  using Shapes = std::set<ShapePtr>;
  const std::pair<PartPtr, Shapes> cases[] = {{root_, {housing_, shaft_, gear_}},
                                              {drive_, {shaft_, gear_}},
                                              {gear_->GetInstance()->GetSbomInstance(), {gear_}},
                                              {nullptr, {}}};
  for (const auto& [part, expected] : cases) {
    Shapes shapes, none;
    zrannotations::GetShapeInstancesForAssembly(scene_, part, shapes);
    EXPECT_EQ(shapes, expected);
    zrannotations::GetShapeInstancesForAssembly(nullptr, part, none);
    EXPECT_TRUE(none.empty());
  }
  using zrannotations::IsPartOrAssemblyVisible;
  shaft_->SetVisible(false);
  EXPECT_TRUE(IsPartOrAssemblyVisible(scene_, drive_)) << "the gear is";
  EXPECT_FALSE(IsPartOrAssemblyVisible(scene_, shaft_->GetInstance()->GetSbomInstance()));
  gear_->SetVisible(false);
  EXPECT_FALSE(IsPartOrAssemblyVisible(scene_, drive_));
  EXPECT_TRUE(IsPartOrAssemblyVisible(scene_, root_));
  EXPECT_FALSE(IsPartOrAssemblyVisible(nullptr, root_));
  EXPECT_FALSE(IsPartOrAssemblyVisible(scene_, nullptr));
}

TEST_F(SceneFunctionsTest, FilePropertiesBelongToOneSceneAndOneGroup) {
  const auto other = MakeObject<zrk::ShapeScene>();
  zrannotations::SetFileProperty(scene_, "File", "Title", "Gearbox");
  zrannotations::SetFileProperty(scene_, "File", "Title", "Gearbox 2");
  zrannotations::SetFileProperty(scene_, "Other", "Title", "no");
  zrannotations::SetFileProperty(nullptr, "File", "Title", "no");
  struct Case {
    const char *group, *name, *shownName, *value;
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
  const TemplatePtr first = MakeTemplate("item"), second = MakeTemplate("literal");
  for (const TemplatePtr& added : {first, second, first, TemplatePtr()}) zrannotations::AddCalloutTemplate(added);
  std::vector<TemplatePtr> templates{second};
  zrannotations::GetCalloutTemplates(templates, true, false);
  zrannotations::ClearCalloutTemplates();
  zrannotations::GetCalloutTemplates(templates, true, false);
  EXPECT_EQ(templates, std::vector<TemplatePtr>({second, first, second}));
}

}  // namespace zrtest
