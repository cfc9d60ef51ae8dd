// Template content becomes label text.
#include <du/Localizer.h>
#include <zrannotations/CalloutLabelFileProperties.h>
#include <zrk/MakeObject.h>
#include <zrk/Preferences.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Contents;
using zrtest::Part;
using zrtest::SceneFixture;
using zrtest::TemplateBuilder;

enum class On { Bolt, Root, Module, Loose, Nothing, NoCallout };

struct LabelCase {
  const char* name;
  TemplateBuilder pieces;
  std::string expected;
  On on = On::Bolt;
  bool withCallout = true;
  bool calloutIsMarkdown = false;
  bool contentIsMarkdown = false;
  bool hasItem = true;
  bool withList = true;
};

/// product / frame / module / bolt, with the name of the instance as property "Data"/"Where" of each, and an item for
/// the bolt with number "1", quantity 3 and tag "T*1".
class LabelWorkerTest : public SceneFixture {
protected:
  explicit LabelWorkerTest(const zrtest::SceneOptions& options = {}) : SceneFixture(options) {
    for (const Part& part : {structure_->Root(), frame_, module_, bolt_})
      Set(part, "Data", "Where", part.sbom->GetName());
    Set(bolt_, "Data", "Mass", "2*kg");
    Set(bolt_, "Data", "Mass", "3 kg", "alternate");
    Set(bolt_, "", "Material", "Steel");
    Set(bolt_, "System", "zrITM", "own");
    items_->SetQuantity(item_, 3);
    items_->SetItemTag(item_, "T*1");
    zrannotations::SetFileProperty(scene_, "File", "Author", "A. Smith");
    auto loose = zrk::MakeObject<zrk::Instance>(zrk::MakeObject<zrk::ComponentNode>("loose"), module_.design, "loose");
    loose_.shape = zrk::MakeObject<zrk::ShapeInstance>(loose, nullptr, dg::DBox(), dg::Location());
    scene_->AddShapeInstance(loose_.shape);
  }

  void Set(const Part& part, const char* group, const char* name, const std::string& value, const char* source = "") {
    tree_->SetProperty(part.sbom, group, name, du::Symbol(value), source);
  }

  [[nodiscard]] CalloutPtr CalloutOn(On on) const {
    if (on == On::NoCallout) return nullptr;
    if (on == On::Bolt) return MakeCallout(nullptr, bolt_);
    if (on == On::Loose) return MakeCallout(nullptr, loose_);
    auto callout = MakeCallout(nullptr, Part{});
    if (on == On::Root) AddAssemblyLeader(callout, root_);
    if (on == On::Module) AddAssemblyLeader(callout, module_);
    return callout;
  }

  [[nodiscard]] std::string LabelOf(const LabelCase& tested) const {
    const auto callout = CalloutOn(tested.on);
    if (callout) callout->SetIsMarkdown(tested.calloutIsMarkdown);
    std::string label = "left over";
    zrcallouts::Callouts::GenerateLabelString(callout, scene_, tested.pieces.Pieces(), tested.contentIsMarkdown, label,
                                              tested.withList ? itemList_ : nullptr, tested.hasItem,
                                              tested.hasItem ? item_ : 0, tested.withCallout);
    return label;
  }

  const Part root_ = structure_->Root();
  const Part frame_ = structure_->AddAssembly(root_, "frame");
  const Part module_ = structure_->AddAssembly(frame_, "module");
  const Part bolt_ = structure_->AddPart(module_, "bolt");
  const std::uint32_t item_ = AddItem(bolt_);
  Part loose_;
};

const auto kMass = TemplateBuilder().Literal("m*").Property("Data", "Mass");
const auto kMissing = TemplateBuilder().Literal("<").Property("Data", "Nothing").Literal(">");

TemplateBuilder Where(const char* level) {
  return TemplateBuilder().Property("Data", "Where", "Value", level);
}

const LabelCase kCommonCases[] = {
    {"NoContent", TemplateBuilder(), ""},
    {"NoContentInMarkdown", TemplateBuilder(), "", On::Bolt, true, true},
    {"NumberBehindLiteral", TemplateBuilder().Literal("Item ").Token("zrITM"), "Item 1"},
    {"QuantityAndTag", TemplateBuilder().Token("zrQTY").Literal(" x ").Token("zrTAG"), "3 x T*1"},
    {"TokensAreExact", TemplateBuilder().Token("zritm").Property("system", "zrITM").Token("zrITM "), ""},
    {"TokenNameShown", TemplateBuilder().Property("System", "zrQTY", "Name"), "3"},
    {"TokenWithoutItemIsAPartProperty", TemplateBuilder().Token("zrITM"), "own", On::Bolt, true, false, false, false},
    {"ItemWithoutList", TemplateBuilder().Literal("Item ").Token("zrITM"), "", On::Bolt, true, false, false, true,
     false},
    {"NoItemNoList", TemplateBuilder().Literal("Note"), "Note", On::Bolt, true, false, false, false, false},
    {"NullAndUnknownPieces", TemplateBuilder().Null().Literal("a").OfType(2, "no").OfType(99, "no").Literal("b"), "ab"},
    {"FileProperty", TemplateBuilder().Property("File", "Author").Literal("|").Property("File", "Author", "Name"),
     "A. Smith|Author"},
    {"FilePropertyUnknown", TemplateBuilder().Literal("by ").Property("File", "Editor"), "by "},
    {"FilePropertyWithoutCallout", TemplateBuilder().Property("File", "Author"), "A. Smith", On::NoCallout},
    {"PartProperty", kMass, "m*2*kg"},
    {"PartPropertyName", TemplateBuilder().Property("Data", "Mass", "Name"), "Mass"},
    {"PartPropertyAnyOtherDisplay", TemplateBuilder().Property("Data", "Mass", "name"), "2*kg"},
    {"PartPropertyWithoutName", TemplateBuilder().Literal("a").Property("Data", ""), "a"},
    {"DefaultGroupByAlias", TemplateBuilder().Property("ZRS File Properties", "Material"), "Steel"},
    {"DefaultGroupByInternalAlias", TemplateBuilder().Property("__ZRS_PROPERTIES", "Material"), "Steel"},
    {"DefaultGroupByCatalogueName", TemplateBuilder().Property("Properties", "Material"), "Steel"},
    {"DefaultGroupInOtherLanguage", TemplateBuilder().Property("Eigenschaften", "Material"), ""},
    {"LevelParent", Where("Parent"), "module"},
    {"LevelParentOfTheRoot", Where("Parent"), "", On::Root},
    {"LevelIsExact", Where("root"), "bolt"},
    {"NoLeader", Where(""), "", On::Nothing},
    {"LooseDesign", Where(""), "", On::Loose},
    {"LooseDesignHasNoParentLevel", Where("Parent"), "", On::Loose},
    {"RootOfNothing", Where("Root"), "", On::Nothing},
    {"MissingSwitchedOff", kMissing, "<>"},
    // A value that is inserted into markdown is escaped; plain content is escaped as a whole, once.
    {"MarkdownBoth", kMass, "m*2\\*kg", On::Bolt, true, true, true},
    {"MarkdownCalloutOnly", kMass, "m\\*2\\*kg", On::Bolt, true, true, false},
    {"MarkdownContentOnly", kMass, "m*2*kg", On::Bolt, true, false, true},
    {"FlatTokensInMarkdown", TemplateBuilder().Literal("*").Token("zrTAG"), "*T\\*1", On::NoCallout, false, false,
     true},
    {"FlatTokensEscapedAsAWhole", TemplateBuilder().Literal("*").Token("zrTAG"), "\\*T\\*1", On::NoCallout, false},
    {"FlatLabelsShowNoPartProperties", TemplateBuilder().Literal("a").Property("Data", "Mass"), "a", On::Bolt, false},
    {"FlatLabelsShowFileProperties", TemplateBuilder().Property("File", "Author"), "A. Smith", On::NoCallout, false},
};

std::string NameOf(const ::testing::TestParamInfo<LabelCase>& tested) {
  return tested.param.name;
}

class LabelInViewerTest : public LabelWorkerTest, public ::testing::WithParamInterface<LabelCase> {};
TEST_P(LabelInViewerTest, ResolvesToText) {
  EXPECT_EQ(LabelOf(GetParam()), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Common, LabelInViewerTest, ::testing::ValuesIn(kCommonCases), NameOf);
INSTANTIATE_TEST_SUITE_P(Viewer, LabelInViewerTest,
                         ::testing::Values(LabelCase{"RootIsTheTopLevelAssembly", Where("Root"), "frame"},
                                           LabelCase{"RootOfTheRoot", Where("Root"), "product", On::Root},
                                           LabelCase{"RootOfAnAssembly", Where("Root"), "frame", On::Module},
                                           LabelCase{"RootOfLooseDesign", Where("Root"), "frame", On::Loose}),
                         NameOf);

class LabelInAuthoringTest : public LabelWorkerTest, public ::testing::WithParamInterface<LabelCase> {
protected:
  LabelInAuthoringTest() : LabelWorkerTest({.authoring = true}) {}
};
TEST_P(LabelInAuthoringTest, ResolvesToText) {
  EXPECT_EQ(LabelOf(GetParam()), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Common, LabelInAuthoringTest, ::testing::ValuesIn(kCommonCases), NameOf);
INSTANTIATE_TEST_SUITE_P(Authoring, LabelInAuthoringTest,
                         ::testing::Values(LabelCase{"RootIsThatOfTheContainer", Where("Root"), "product"},
                                           LabelCase{"RootOfAnAssembly", Where("Root"), "product", On::Module},
                                           LabelCase{"RootOfLooseDesign", Where("Root"), "product", On::Loose}),
                         NameOf);

TEST_F(LabelWorkerTest, TheShownShapeSourceChoosesTheProperty) {
  bolt_.shape->SetCurrentShapeSource("alternate");
  EXPECT_EQ(LabelOf({"", kMass, ""}), "m*3 kg");
  bolt_.shape->SetCurrentShapeSource("unknown");
  EXPECT_EQ(LabelOf({"", kMass, ""}), "m*2*kg");
}

TEST_F(LabelWorkerTest, TheNameOfTheDefaultGroupFollowsTheLanguage) {
  world_->ChangeLanguage("de");
  EXPECT_EQ(LabelOf({"", TemplateBuilder().Property("Eigenschaften", "Material"), ""}), "Steel");
  EXPECT_EQ(LabelOf({"", TemplateBuilder().Property("Properties", "Material"), ""}), "");
}

TEST_F(LabelWorkerTest, TheSceneSaysWhatAMissingPropertyShows) {
  scene_->SetMissingAttr(false, "n/a*");
  EXPECT_EQ(LabelOf({"", kMissing, ""}), "<>");
  scene_->SetMissingAttr(true, "n/a*");
  EXPECT_EQ(LabelOf({"", kMissing, ""}), "<n/a*>");
  EXPECT_EQ(LabelOf({"", kMissing, "", On::Nothing}), "<n/a*>");
  EXPECT_EQ(LabelOf({"", kMissing, "", On::NoCallout}), "<n/a*>");
  EXPECT_EQ(LabelOf({"", TemplateBuilder().Literal("a").Property("Data", ""), ""}), "a");  // names no property at all
  EXPECT_EQ(LabelOf({"", kMissing, "", On::Bolt, true, true, true}), "<n/a*>");            // not escaped
  EXPECT_EQ(LabelOf({"", kMissing, "", On::Bolt, false}), "\\<\\>");  // a 2D label asks for no property
}

class MissingInAuthoringTest : public LabelWorkerTest {
protected:
  MissingInAuthoringTest() : LabelWorkerTest({.authoring = true}) {}
};

TEST_F(MissingInAuthoringTest, ThePreferencesSayWhatAMissingPropertyShows) {
  const auto preferences = world_->GetPreferences();
  scene_->SetMissingAttr(true, "of the scene");
  preferences->SetString("Annotations/CB_MissingAttrNotificationInput", "none");
  EXPECT_EQ(LabelOf({"", kMissing, ""}), "<>");
  preferences->SetBool("Annotations/CB_MissingAttrNotification", true);
  EXPECT_EQ(LabelOf({"", kMissing, ""}), "<none>");
  world_->SetPreferences(nullptr);
  EXPECT_EQ(LabelOf({"", kMissing, ""}), "<>");
}

TEST_F(LabelWorkerTest, TheEngineAsksTheCalloutForItsItem) {
  std::string label;
  const auto pieces = TemplateBuilder().Token("zrITM").Literal("/").Token("zrQTY").Pieces();
  const auto callout = MakeCallout(nullptr, bolt_, item_);
  engine_->GenerateLabelString(callout, pieces, false, label);
  EXPECT_EQ(label, "1/3");
  engine_->GenerateLabelString(nullptr, pieces, false, label);
  EXPECT_EQ(label, "/");
  engine_->GenerateLabelString(MakeCallout(nullptr, bolt_, 99), pieces, false, label);  // an item that is not there
  EXPECT_EQ(label, "/0");
  CloseScene();
  engine_->GenerateLabelString(callout, pieces, false, label);
  EXPECT_EQ(label, "");
}

TEST_F(LabelWorkerTest, AFlatLabelTakesTheItemListOfItsScene) {
  std::string label;
  const auto pieces = TemplateBuilder().Literal("No. ").Token("zrITM").Pieces();
  engine_->GenerateLabelStringFor2DCallout(scene_, pieces, true, label, true, item_);
  EXPECT_EQ(label, "No. 1");
  const auto listless = AddScene(false);
  engine_->GenerateLabelStringFor2DCallout(listless, pieces, true, label, true, item_);
  EXPECT_EQ(label, "");
  engine_->GenerateLabelStringFor2DCallout(listless, pieces, true, label, false, 0);
  EXPECT_EQ(label, "No. ");
}

}  // namespace
