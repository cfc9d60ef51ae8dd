#include "commands/Options.h"

#include <iterator>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

namespace zrfigure {
namespace {

using Arguments = std::vector<std::string>;

Arguments Words(const std::string& line) {
  std::istringstream words(line);
  return {std::istream_iterator<std::string>(words), {}};
}

/// The message when arguments are refused: one line.
std::string Refusal(const std::string& line) {
  const ParsedOptions parsed = ParseOptions(Words(line));
  EXPECT_TRUE(!parsed.options && parsed.output.empty()) << line;
  EXPECT_EQ(parsed.error.find('\n'), std::string::npos) << parsed.error;
  return parsed.error;
}

TEST(OptionsTest, RefusedValuesAreQuoted) {
  for (const std::string line :
       {"--view iso --view odd", "--view 45",      "--view 45,",   "--view ,30",      "--view 45,30,1",
        "--view 45,91",          "--view 0,-90.5", "--view nan,0", "--view inf,0",    "--view 4x,30",
        "--view 1e999,0",        "--page A9",      "--page 10x10", "--page 200xtall", "--margin -1",
        "--template fancy",      "--level -1",     "--lang xx",    "--align left",    "--list left"}) {
    const std::string value = "'" + line.substr(line.rfind(' ') + 1) + "'";
    EXPECT_NE(Refusal("a.stp " + line).find(value), std::string::npos) << line;
  }
}

TEST(OptionsTest, RefusedArgumentsAreNamedOrTheirRemedyIs) {
  const std::pair<const char*, std::vector<const char*>> refused[] = {
      {"no model given", {""}},
      {"b.stp", {"a.stp b.stp"}},
      {"--colour", {"a.stp --colour"}},
      {"--view", {"a.stp --view", "a.stp --view sideways", "a.stp --view 30,"}},
      {"--landscape", {"a.stp --portrait --landscape"}},
      {"--per-instance", {"a.stp --combine --per-instance"}},
      {"not with --combine", {"a.stp --callouts 2d --combine"}},
      {"leave less than 40 mm", {"a.stp --margin 100"}},
      {"--level: ", {"a.stp --level 99999999999"}},
      {"use flat or hierarchical", {"a.stp --numbering odd"}},
      {"use item or clockwise", {"a.stp --order odd"}},
      {"--distribute: needs --align", {"a.stp --distribute"}},
      {"'.png' is unknown", {"a.stp --pin a.png"}},
      {"'.gif' is unknown", {"a.stp -o a.gif"}},
      {"has no extension", {"a.stp -o figure"}},
      {"use .csv, .json or .html", {"a.stp --parts p.xls"}},
      {"no file given", {"check"}},
      {"--format: 'xml'", {"check a.svg --format xml"}},
      {"-o", {"check a.svg -o b.svg"}}};
  for (const auto& [expected, lines] : refused) {
    for (const char* line : lines) EXPECT_NE(Refusal(line).find(expected), std::string::npos) << line;
  }
  EXPECT_NE(ParseOptions({"a.stp", "--select", ""}).error.find("--select"), std::string::npos);
}

Options Parse(const Arguments& arguments) {
  const ParsedOptions parsed = ParseOptions(arguments);
  EXPECT_EQ(parsed.error, "");
  return parsed.options.value_or(Options{});
}

TEST(OptionsTest, ModelAloneGetsTheDefaults) {
  const Options options = Parse({"some/folder/pump.v2.step"});
  EXPECT_EQ(std::tuple(options.figure, options.mode, options.page.marginMm, options.listPlace),
            std::tuple("pump.v2.svg", CalloutMode::OnePerItem, 10, TablePlace::Beside));
  EXPECT_EQ(Parse({"a.stp", "--page", "841x594"}).page.marginMm, 20);
  EXPECT_EQ(Parse({"a.stp", "--portrait"}).listPlace, TablePlace::Under);
  EXPECT_EQ(Parse({"check", "a.svg", "--format", "sarif"}).check, FindingFormat::Sarif);
}

TEST(OptionsTest, ValuesReachTheirFields) {
  const Options options = Parse(
      Words("--view -30,20 --view top --order clockwise --align center-y --distribute --frame --list on --select bolt* "
            "pump.step --select a/** -o x.PDF --level 2 --per-instance --margin 12.5"));
  EXPECT_EQ(std::tuple(options.model, options.figure), std::tuple("pump.step", "x.PDF"));
  EXPECT_EQ(options.select, (Arguments{"bolt*", "a/**"}));
  ASSERT_EQ(options.directions.size(), 2u);
  EXPECT_LT(options.directions[0].toViewer.x, 0);
  EXPECT_EQ(options.directions[1].toViewer.z, 1);
  EXPECT_EQ(std::tuple(options.order, options.align, options.listPlace, options.level, options.mode),
            std::tuple(ItemOrder::Clockwise, zrcallouts::Align_Mode::CenterY, TablePlace::OnDrawing, 2u,
                       CalloutMode::PerInstance));
  EXPECT_TRUE(options.distribute && options.page.frame);
  EXPECT_EQ(options.page.marginMm, 12.5);
}

TEST(OptionsTest, PageTurnsWithTheOrientation) {
  const std::tuple<const char*, double, double> pages[] = {{"a.stp --page A3", 420, 297},
                                                           {"a.stp --page A4 --portrait", 210, 297},
                                                           {"a.stp", 297, 210},
                                                           {"a.stp --page 100x200", 100, 200},
                                                           {"a.stp --page 100x200 --landscape", 200, 100},
                                                           {"a.stp --page 200x100.5 --portrait", 100.5, 200}};
  for (const auto& [line, width, height] : pages) {
    const Page page = Parse(Words(line)).page;
    EXPECT_EQ(std::pair(page.widthMm, page.heightMm), std::pair(width, height)) << line;
  }
}

TEST(OptionsTest, HelpAndVersionGoToStdout) {
  const std::string help = ParseOptions({"--help"}).output;
  for (const char* part : {"MODEL", "--numbering", "Examples:", "Callouts", "View and page"}) {
    EXPECT_NE(help.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(ParseOptions({"--version"}).output.rfind("zrfigure ", 0), 0u);
}

}  // namespace
}  // namespace zrfigure
