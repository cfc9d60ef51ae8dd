#include "commands/Options.h"

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

using Arguments = std::vector<std::string>;

struct RefusedCase {
  const char* name;
  Arguments arguments;
  const char* expected;  ///< Part of the message.
};

class RefusedOptionsTest : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedOptionsTest, SaysWhatIsWrongInOneLine) {
  const ParsedOptions parsed = ParseOptions(GetParam().arguments);
  EXPECT_FALSE(parsed.options);
  EXPECT_TRUE(parsed.output.empty());
  EXPECT_NE(parsed.error.find(GetParam().expected), std::string::npos) << parsed.error;
  EXPECT_EQ(parsed.error.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedOptionsTest,
    testing::Values(RefusedCase{"NoModel", {}, "no model given"}, RefusedCase{"TwoModels", {"a.stp", "b.stp"}, "b.stp"},
                    RefusedCase{"UnknownOption", {"a.stp", "--colour"}, "--colour"},
                    RefusedCase{"MissingValue", {"a.stp", "--view"}, "--view"},
                    RefusedCase{"UnknownView", {"a.stp", "--view", "sideways"}, "--view: "},
                    RefusedCase{"ViewWithOneAngle", {"a.stp", "--view", "30,"}, "--view: "},
                    RefusedCase{"UnknownPage", {"a.stp", "--page", "A9"}, "'A9' is not a page"},
                    RefusedCase{"TinyPage", {"a.stp", "--page", "10x10"}, "'10x10' is not a page"},
                    RefusedCase{"PageInWords", {"a.stp", "--page", "200xtall"}, "'200xtall' is not a page"},
                    RefusedCase{"NegativeMargin", {"a.stp", "--margin", "-1"}, "--margin: '-1'"},
                    RefusedCase{"MarginEatsThePage", {"a.stp", "--margin", "100"}, "leave less than 40 mm"},
                    RefusedCase{"BothOrientations", {"a.stp", "--portrait", "--landscape"}, "--landscape"},
                    RefusedCase{"BothModes", {"a.stp", "--combine", "--per-instance"}, "--per-instance"},
                    RefusedCase{"UnknownTemplate", {"a.stp", "--template", "fancy"}, "'fancy' is neither"},
                    RefusedCase{"NegativeLevel", {"a.stp", "--level", "-1"}, "--level: '-1'"},
                    RefusedCase{"HugeLevel", {"a.stp", "--level", "99999999999"}, "--level: "},
                    RefusedCase{"UnknownNumbering", {"a.stp", "--numbering", "odd"}, "use flat or hierarchical"},
                    RefusedCase{"UnknownLanguage", {"a.stp", "--lang", "xx"}, "--lang: 'xx'"},
                    RefusedCase{"UnknownOrder", {"a.stp", "--order", "odd"}, "use item or clockwise"},
                    RefusedCase{"UnknownAlignment", {"a.stp", "--align", "left"}, "--align: 'left' is unknown"},
                    RefusedCase{"DistributeAlone", {"a.stp", "--distribute"}, "--distribute: needs --align"},
                    RefusedCase{"PinToAPicture", {"a.stp", "--pin", "a.png"}, "--pin: '.png' is unknown"},
                    RefusedCase{"SheetCombines", {"a.stp", "--callouts", "2d", "--combine"}, "not with --combine"},
                    RefusedCase{"UnknownListPlace", {"a.stp", "--list", "left"}, "--list: 'left'"},
                    RefusedCase{"OneOfTheViewsUnknown", {"a.stp", "--view", "iso", "--view", "odd"}, "view 'odd'"},
                    RefusedCase{"NothingToCheck", {"check"}, "no file given"},
                    RefusedCase{"UnknownFindingFormat", {"check", "a.svg", "--format", "xml"}, "--format: 'xml'"},
                    RefusedCase{"CheckWritesNothing", {"check", "a.svg", "-o", "b.svg"}, "-o"},
                    RefusedCase{"EmptyGlob", {"a.stp", "--select", ""}, "--select"},
                    RefusedCase{"UnknownFormat", {"a.stp", "-o", "a.gif"}, "--output: '.gif' is unknown"},
                    RefusedCase{"NoFormat", {"a.stp", "-o", "figure"}, "has no extension"},
                    RefusedCase{"UnknownPartsFormat", {"a.stp", "--parts", "p.xls"}, "use .csv or .json"}),
    [](const auto& entry) { return entry.param.name; });

Options Parse(const Arguments& arguments) {
  const ParsedOptions parsed = ParseOptions(arguments);
  EXPECT_EQ(parsed.error, "");
  return parsed.options.value_or(Options{});
}

TEST(OptionsTest, ModelAloneGetsTheDefaults) {
  const Options options = Parse({"some/folder/pump.v2.step"});
  EXPECT_EQ(options.model, "some/folder/pump.v2.step");
  EXPECT_EQ(options.figure, "pump.v2.svg");
  EXPECT_EQ(options.mode, CalloutMode::OnePerItem);
  EXPECT_EQ(options.page.widthMm, 297);
  EXPECT_EQ(options.page.heightMm, 210);
  EXPECT_EQ(options.page.marginMm, 10);
  EXPECT_EQ(Parse({"a.stp", "--page", "841x594"}).page.marginMm, 20);
  EXPECT_EQ(options.listPlace, TablePlace::Beside);
  EXPECT_EQ(Parse({"a.stp", "--portrait"}).listPlace, TablePlace::Under);
  EXPECT_EQ(Parse({"check", "a.svg", "--format", "sarif"}).check, FindingFormat::Sarif);
  EXPECT_FALSE(options.check || options.align || options.level || options.hierarchical || options.json ||
               options.strict || options.quiet);
}

TEST(OptionsTest, ValuesReachTheirFields) {
  const Options options = Parse({"--view",   "-30,20",      "--view",       "top",
                                 "--order",  "clockwise",   "--callouts",   "2d",
                                 "--align",  "center-y",    "--distribute", "--frame",
                                 "--pin",    "old.json",    "--list",       "on",
                                 "--select", "bolt*",       "pump.step",    "--select",
                                 "a/**",     "-o",          "x.PDF",        "--level",
                                 "2",        "--numbering", "hierarchical", "--per-instance",
                                 "--margin", "12.5",        "--lang",       "ja",
                                 "--weld",   "frame"});
  EXPECT_EQ(options.model, "pump.step");
  EXPECT_EQ(options.select, (Arguments{"bolt*", "a/**"}));
  EXPECT_EQ(options.weld, Arguments{"frame"});
  EXPECT_EQ(options.figure, "x.PDF");
  ASSERT_EQ(options.directions.size(), 2u);
  EXPECT_LT(options.directions[0].toViewer.x, 0);
  EXPECT_EQ(options.directions[1].toViewer.z, 1);
  EXPECT_EQ(options.order, ItemOrder::Clockwise);
  EXPECT_EQ(options.kind, CalloutKind::Sheet);
  EXPECT_EQ(options.align, zrcallouts::Align_Mode::CenterY);
  EXPECT_TRUE(options.distribute && options.page.frame);
  EXPECT_EQ(options.pin, "old.json");
  EXPECT_EQ(options.listPlace, TablePlace::OnDrawing);
  EXPECT_EQ(options.level, 2u);
  EXPECT_TRUE(options.hierarchical);
  EXPECT_EQ(options.mode, CalloutMode::PerInstance);
  EXPECT_EQ(options.page.marginMm, 12.5);
  EXPECT_EQ(options.language, "ja");
}

struct PageCase {
  Arguments arguments;
  double width, height;
};

TEST(OptionsTest, PageTurnsWithTheOrientation) {
  for (const PageCase& page :
       {PageCase{{"--page", "A3"}, 420, 297}, PageCase{{"--page", "A4", "--portrait"}, 210, 297},
        PageCase{{"--page", "100x200"}, 100, 200}, PageCase{{"--page", "100x200", "--landscape"}, 200, 100},
        PageCase{{"--page", "200x100.5", "--portrait"}, 100.5, 200}}) {
    Arguments arguments = page.arguments;
    arguments.insert(arguments.begin(), "a.stp");
    const Options options = Parse(arguments);
    EXPECT_EQ(options.page.widthMm, page.width) << page.arguments[1];
    EXPECT_EQ(options.page.heightMm, page.height) << page.arguments[1];
  }
}

TEST(OptionsTest, HelpAndVersionGoToStdout) {
  const ParsedOptions help = ParseOptions({"--help"});
  EXPECT_EQ(help.error, "");
  for (const char* part : {"MODEL", "--numbering", "Examples:", "Callouts", "View and page"}) {
    EXPECT_NE(help.output.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(ParseOptions({"--version"}).output.rfind("zrfigure ", 0), 0u);
}

}  // namespace
}  // namespace zrfigure
