// Template content becomes label text.
#include <du/Localizer.h>
#include <zrannotations/CalloutLabelFileProperties.h>
#include <zrk/MakeObject.h>
#include <zrk/Preferences.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::TemplateBuilder;

/// Where the callout's leader ends.
enum class On { Bolt, Root, Module, Loose, Nothing, NoCallout };

/// How the label is asked for, if not plainly, with an item and an item list.
enum How : unsigned { kPlain = 0, kMarkdownCallout = 1, kMarkdownContent = 2, kFlat = 4, kNoItem = 8, kNoList = 16 };

struct LabelCase {
  const char* name;
  TemplateBuilder pieces;
  const char* expected;
  On on = On::Bolt;
  unsigned how = kPlain;
  const char* inAuthoring = nullptr;  ///< Where that differs.
};

/// product / frame / module / bolt, with the name of the instance as property "Data"/"Where" of each, and an item for
/// the bolt with number "1", quantity 3 and tag "T*1".
class LabelWorkerTest : public zrtest::SceneFixture {
protected:
  explicit LabelWorkerTest(const zrtest::SceneOptions& options = {}) : SceneFixture(options) {
    for (const Part& part : {root_, frame_, module_, bolt_}) Set(part, "Data", "Where", part.sbom->GetName());
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
    auto callout = MakeCallout(nullptr, on == On::Bolt ? bolt_ : on == On::Loose ? loose_ : Part{});
    if (on == On::Root) AddAssemblyLeader(callout, root_);
    if (on == On::Module) AddAssemblyLeader(callout, module_);
    return callout;
  }
  [[nodiscard]] std::string LabelOf(const TemplateBuilder& pieces, On on = On::Bolt, unsigned how = kPlain) const {
    const auto callout = CalloutOn(on);
    if (callout) callout->SetIsMarkdown((how & kMarkdownCallout) != 0);
    const bool hasItem = (how & kNoItem) == 0;
    std::string label = "left over";
    zrcallouts::Callouts::GenerateLabelString(callout, scene_, pieces.Pieces(), (how & kMarkdownContent) != 0, label,
                                              (how & kNoList) == 0 ? itemList_ : nullptr, hasItem, hasItem ? item_ : 0,
                                              (how & kFlat) == 0);
    return label;
  }
  void ExpectTheLabelsOfAllCases(bool authoring) const;

  const Part root_ = structure_->Root();
  const Part frame_ = structure_->AddAssembly(root_, "frame");
  const Part module_ = structure_->AddAssembly(frame_, "module");
  const Part bolt_ = structure_->AddPart(module_, "bolt");
  const std::uint32_t item_ = AddItem(bolt_);
  Part loose_;
};

struct LabelInAuthoringTest : LabelWorkerTest {
  LabelInAuthoringTest() : LabelWorkerTest({.authoring = true}) {}
};

TemplateBuilder Text(const char* text) {
  return TemplateBuilder().Literal(text);
}
TemplateBuilder Property(const char* group, const char* name, const char* display = "") {
  return TemplateBuilder().Property(group, name, display);
}
TemplateBuilder Where(const char* level) {
  return TemplateBuilder().Property("Data", "Where", "Value", level);
}

const auto kMass = Text("m*").Property("Data", "Mass");
const auto kMissing = Text("<").Property("Data", "Nothing").Literal(">");
const auto kStarTag = Text("*").Token("zrTAG");
const auto kItem = TemplateBuilder().Token("zrITM");

const LabelCase kCases[] = {
    {"no content", {}, ""},
    {"no content in markdown", {}, "", On::Bolt, kMarkdownCallout},
    {"number behind literal", Text("Item ").Token("zrITM"), "Item 1"},
    {"quantity and tag", TemplateBuilder().Token("zrQTY").Literal(" x ").Token("zrTAG"), "3 x T*1"},
    {"tokens are exact", TemplateBuilder().Token("zritm").Property("system", "zrITM").Token("zrITM "), ""},
    {"token name shown", Property("System", "zrQTY", "Name"), "3"},
    {"token without item is a part property", kItem, "own", On::Bolt, kNoItem},
    {"item without list", Text("Item ").Token("zrITM"), "", On::Bolt, kNoList},
    {"no item, no list", Text("Note"), "Note", On::Bolt, kNoItem | kNoList},
    {"null and unknown pieces", TemplateBuilder().Null().Literal("a").OfType(2, "no").OfType(99, "no").Literal("b"),
     "ab"},
    {"file property", Property("File", "Author").Literal("|").Property("File", "Author", "Name"), "A. Smith|Author"},
    {"file property unknown", Text("by ").Property("File", "Editor"), "by "},
    {"file property without callout", Property("File", "Author"), "A. Smith", On::NoCallout},
    {"part property", kMass, "m*2*kg"},
    {"part property name", Property("Data", "Mass", "Name"), "Mass"},
    {"part property, any other display", Property("Data", "Mass", "name"), "2*kg"},
    {"part property without name", Text("a").Property("Data", ""), "a"},
    {"default group by alias", Property("ZRS File Properties", "Material"), "Steel"},
    {"default group by internal alias", Property("__ZRS_PROPERTIES", "Material"), "Steel"},
    {"default group by catalogue name", Property("Properties", "Material"), "Steel"},
    {"default group in another language", Property("Eigenschaften", "Material"), ""},
    {"parent", Where("Parent"), "module"},
    {"parent of the root", Where("Parent"), "", On::Root},
    {"level is exact", Where("root"), "bolt"},
    {"no leader", Where(""), "", On::Nothing},
    {"loose design", Where(""), "", On::Loose},
    {"parent of loose design", Where("Parent"), "", On::Loose},
    {"root of nothing", Where("Root"), "", On::Nothing},
    // The viewer takes the top-level assembly for the root, the authoring application that of the container.
    {"root", Where("Root"), "frame", On::Bolt, kPlain, "product"},
    {"root of the root", Where("Root"), "product", On::Root},
    {"root of an assembly", Where("Root"), "frame", On::Module, kPlain, "product"},
    {"root of loose design", Where("Root"), "frame", On::Loose, kPlain, "product"},
    {"missing, switched off", kMissing, "<>"},
    // A value that is inserted into markdown is escaped; plain content is escaped as a whole, once.
    {"markdown both", kMass, "m*2\\*kg", On::Bolt, kMarkdownCallout | kMarkdownContent},
    {"markdown callout only", kMass, "m\\*2\\*kg", On::Bolt, kMarkdownCallout},
    {"markdown content only", kMass, "m*2*kg", On::Bolt, kMarkdownContent},
    {"flat tokens in markdown", kStarTag, "*T\\*1", On::NoCallout, kFlat | kMarkdownContent},
    {"flat tokens escaped as a whole", kStarTag, "\\*T\\*1", On::NoCallout, kFlat},
    {"flat labels show no part properties", Text("a").Property("Data", "Mass"), "a", On::Bolt, kFlat},
    {"flat labels show file properties", Property("File", "Author"), "A. Smith", On::NoCallout, kFlat},
};

void LabelWorkerTest::ExpectTheLabelsOfAllCases(bool authoring) const {
  for (const LabelCase& tested : kCases) {
    EXPECT_EQ(LabelOf(tested.pieces, tested.on, tested.how),
              authoring && tested.inAuthoring ? tested.inAuthoring : tested.expected)
        << tested.name;
  }
}

TEST_F(LabelWorkerTest, ContentResolvesToText) {
  ExpectTheLabelsOfAllCases(false);
}

TEST_F(LabelInAuthoringTest, ContentResolvesToText) {
  ExpectTheLabelsOfAllCases(true);
}

TEST_F(LabelWorkerTest, TheShownShapeSourceAndTheLanguageChooseTheProperty) {
  bolt_.shape->SetCurrentShapeSource("alternate");
  EXPECT_EQ(LabelOf(kMass), "m*3 kg");
  bolt_.shape->SetCurrentShapeSource("unknown");
  EXPECT_EQ(LabelOf(kMass), "m*2*kg");
  world_->ChangeLanguage("de");
  EXPECT_EQ(LabelOf(Property("Eigenschaften", "Material")), "Steel");
  EXPECT_EQ(LabelOf(Property("Properties", "Material")), "");
}

TEST_F(LabelWorkerTest, TheSceneSaysWhatAMissingPropertyShows) {
  scene_->SetMissingAttr(false, "n/a*");
  EXPECT_EQ(LabelOf(kMissing), "<>");
  scene_->SetMissingAttr(true, "n/a*");
  for (const On on : {On::Bolt, On::Nothing, On::NoCallout}) EXPECT_EQ(LabelOf(kMissing, on), "<n/a*>");
  EXPECT_EQ(LabelOf(Text("a").Property("Data", "")), "a");                                // names no property at all
  EXPECT_EQ(LabelOf(kMissing, On::Bolt, kMarkdownCallout | kMarkdownContent), "<n/a*>");  // not escaped
  EXPECT_EQ(LabelOf(kMissing, On::Bolt, kFlat), "\\<\\>");  // a 2D label asks for no property
}

TEST_F(LabelInAuthoringTest, ThePreferencesSayWhatAMissingPropertyShows) {
  const auto preferences = world_->GetPreferences();
  scene_->SetMissingAttr(true, "of the scene");
  preferences->SetString("Annotations/CB_MissingAttrNotificationInput", "none");
  EXPECT_EQ(LabelOf(kMissing), "<>");
  preferences->SetBool("Annotations/CB_MissingAttrNotification", true);
  EXPECT_EQ(LabelOf(kMissing), "<none>");
  world_->SetPreferences(nullptr);
  EXPECT_EQ(LabelOf(kMissing), "<>");
}

TEST_F(LabelWorkerTest, TheEngineAsksTheCalloutForItsItemAndTheSceneForItsList) {
  const auto labelOf = [&](const CalloutPtr& callout) {
    std::string label;
    engine_->GenerateLabelString(callout, Text("No. ").Token("zrITM").Literal("/").Token("zrQTY").Pieces(), false,
                                 label);
    return label;
  };
  const auto flatLabelOf = [&](const auto& scene, std::uint32_t item) {
    std::string label;
    engine_->GenerateLabelStringFor2DCallout(scene, Text("No. ").Token("zrITM").Pieces(), true, label, item != 0, item);
    return label;
  };
  const auto listless = AddScene(false);
  EXPECT_EQ(flatLabelOf(scene_, item_), "No. 1");
  EXPECT_EQ(flatLabelOf(listless, item_), "");
  EXPECT_EQ(flatLabelOf(listless, 0), "No. ");
  const auto callout = MakeCallout(nullptr, bolt_, item_);
  EXPECT_EQ(labelOf(callout), "No. 1/3");
  EXPECT_EQ(labelOf(nullptr), "No. /");
  EXPECT_EQ(labelOf(MakeCallout(nullptr, bolt_, 99)), "No. /0");  // an item that is not there
  CloseScene();
  EXPECT_EQ(labelOf(callout), "");
}

}  // namespace
