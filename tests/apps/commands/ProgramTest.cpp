// The whole program over real models.

#include <fstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ProgramRunner.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;
using fixtures::ProgramResult;
using fixtures::ReadFile;
using fixtures::RunProgram;
using fixtures::ScratchFolder;
using Json = nlohmann::json;
using Arguments = std::vector<std::string>;

std::string ModelPath(const std::string& name) {
  return (fs::path(ZR_MODELS_DIR) / name).string();
}

class ProgramTest : public testing::Test {
protected:
  void SetUp() override {
    if (!fs::exists(ZR_MODELS_DIR)) GTEST_SKIP() << "no models in " ZR_MODELS_DIR;
  }

  /// The report of a run that must succeed.
  Json Report(const std::string& model, Arguments arguments) {
    arguments.insert(arguments.begin(), {ModelPath(model), "--json"});
    const ProgramResult result = RunProgram(arguments, folder_.Path());
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    return Json::parse(result.output, nullptr, false);
  }

  ScratchFolder folder_;
};

/// The whole report less what differs from run to run.
Json Counts(Json report) {
  report.erase("model");
  report.erase("outputs");
  report.erase("seconds");
  return report;
}

TEST_F(ProgramTest, As1GetsFiveCalloutsFromStepAndFromGlb) {
  const Json step = Report("as1-oc-214.stp", {"--parts", "parts.json"});
  EXPECT_EQ(step["occurrences"], 18);
  EXPECT_EQ(step["parts"], 5);
  EXPECT_EQ(step["items"], 5);
  EXPECT_EQ(step["callouts"], 5);
  EXPECT_EQ(step["leaders"], 18);
  EXPECT_EQ(step["visibleLeaders"], 5);
  EXPECT_EQ(step["layout"], (Json{{"leaderCrossings", 0}, {"labelOverlaps", 0}, {"labelsOverModel", 0}}));
  EXPECT_EQ(step["findings"], Json::array());
  EXPECT_EQ(step["outputs"], (Json{"as1-oc-214.svg", "parts.json"}));
  for (const char* phase : {"import", "generate", "layout", "draw"}) EXPECT_GE(step["seconds"][phase], 0) << phase;

  const Json parts = Json::parse(ReadFile(folder_.Path() / "parts.json"));
  Arguments rows;
  for (const Json& item : parts["items"]) {
    rows.push_back(item["item"].get<std::string>() + " " + item["name"].get<std::string>() + " " +
                   std::to_string(item["quantity"].get<int>()));
  }
  EXPECT_EQ(rows, (Arguments{"1 nut 8", "2 rod 1", "3 bolt 6", "4 l-bracket 2", "5 plate 1"}));
  EXPECT_EQ(Counts(Report("as1-oc-214.glb", {})), Counts(step));
}

TEST_F(ProgramTest, ModesChangeCalloutsAndShownLeaders) {
  const Json combined = Report("as1-oc-214.stp", {"--combine"});
  EXPECT_EQ(combined["callouts"], 5);
  EXPECT_EQ(combined["visibleLeaders"], 18);
  const Json single = Report("as1-oc-214.stp", {"--per-instance"});
  EXPECT_EQ(single["callouts"], 18);
  EXPECT_EQ(single["visibleLeaders"], 18);
}

TEST_F(ProgramTest, MarbleTeaHasSixteenItems) {
  const Json report = Report("MarbleTea.stp", {});
  EXPECT_EQ(report["occurrences"], 22);
  EXPECT_EQ(report["items"], 16);
  EXPECT_EQ(report["layout"], (Json{{"leaderCrossings", 0}, {"labelOverlaps", 0}, {"labelsOverModel", 0}}));
}

TEST_F(ProgramTest, ExternalReferencesOpenFromAnyFolder) {
  const Json report = Report("s1-c5-214/s1-c5-214.stp", {});
  EXPECT_GT(report["occurrences"], 5);
}

TEST_F(ProgramTest, SameCommandTwiceWritesTheSameBytes) {
  for (const std::string extension : {"svg", "pdf", "png"}) {
    const Arguments once{"-o", "once." + extension, "--parts", "once.csv"};
    const Arguments twice{"-o", "twice." + extension, "--parts", "twice.csv"};
    Report("as1-oc-214.stp", once);
    Report("as1-oc-214.stp", twice);
    const std::string bytes = ReadFile(folder_.Path() / once[1]);
    EXPECT_GT(bytes.size(), 5000u) << extension;
    EXPECT_EQ(bytes, ReadFile(folder_.Path() / twice[1])) << extension;
  }
  EXPECT_EQ(ReadFile(folder_.Path() / "once.csv"), ReadFile(folder_.Path() / "twice.csv"));
}

TEST_F(ProgramTest, SelectionLevelNumberingAndWeldsReachTheFigure) {
  EXPECT_EQ(Report("as1-oc-214.stp", {"--select", "nut*"})["items"], 1);
  EXPECT_EQ(Report("as1-oc-214.stp", {"--level", "1"})["callouts"], 3);
  EXPECT_EQ(Report("as1-oc-214.stp", {"--numbering", "hierarchical"})["items"], 8);
  EXPECT_EQ(Report("as1-oc-214.stp", {"--weld", "rod-assembly"})["items"], 5);
}

TEST_F(ProgramTest, HiddenItemIsAFindingThatStrictReports) {
  const Arguments arguments{ModelPath("Mykroscope.step"), "--json", "--strict"};
  const ProgramResult result = RunProgram(arguments, folder_.Path());
  EXPECT_EQ(result.exitCode, 1) << result.errors;
  const Json report = Json::parse(result.output, nullptr, false);
  ASSERT_FALSE(report["findings"].empty());
  EXPECT_EQ(report["findings"][0]["rule"], "item-not-visible");
  EXPECT_GE(report["findings"][0]["item"], 1);
  EXPECT_EQ(RunProgram({arguments[0], "--quiet"}, folder_.Path()).exitCode, 0);
}

TEST_F(ProgramTest, LanguageReachesLabelsAndHeadings) {
  std::ofstream(folder_.Path() / "pos.json")
      << R"({"id":"pos","name":"Position","itemTemplate":true,"contents":[{"text":"Item "},
           {"group":"System","name":"zrITM","display":"Value","level":""}],
           "leaderPen":{"weight":0.25,"unit":"mm"},"translations":{"de":"Pos. {0}"}})";
  Report("as1-oc-214.stp", {"--template", "pos.json", "--lang", "de"});
  const std::string svg = ReadFile(folder_.Path() / "as1-oc-214.svg");
  EXPECT_NE(svg.find("Pos. 5"), std::string::npos);
  EXPECT_NE(svg.find("Benennung"), std::string::npos);
  EXPECT_EQ(svg.find("Item 5"), std::string::npos);
}

struct BadInput {
  const char* name;
  Arguments arguments;
  const char* expected;  ///< Part of the message.
};

/// Runs with a folder that holds some bad files; MODEL stands for a good one.
class BadInputTest : public testing::TestWithParam<BadInput> {};

TEST_P(BadInputTest, IsOneLineAndLeavesNothing) {
  if (!fs::exists(ZR_MODELS_DIR)) GTEST_SKIP();
  const ScratchFolder folder;
  std::ofstream(folder.Path() / "empty.stp");
  std::ofstream(folder.Path() / "text.stp") << "This is no model.\n";
  std::ofstream(folder.Path() / "half.stp") << ReadFile(ModelPath("as1-oc-214.stp")).substr(0, 100000);
  std::ofstream(folder.Path() / "half.glb") << ReadFile(ModelPath("as1-oc-214.glb")).substr(0, 50000);
  std::ofstream(folder.Path() / "words.json") << "no template";
  std::ofstream(folder.Path() / "fields.json") << R"({"id":"x","name":"x"})";
  fs::create_directory(folder.Path() / "taken.svg");
  const Arguments before = folder.Files();
  Arguments arguments = GetParam().arguments;
  for (std::string& argument : arguments) {
    if (argument == "MODEL") argument = ModelPath("as1-oc-214.stp");
  }
  const ProgramResult result = RunProgram(arguments, folder.Path());
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors.rfind("zrfigure: ", 0), 0u) << result.errors;
  EXPECT_NE(result.errors.find(GetParam().expected), std::string::npos) << result.errors;
  EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
  EXPECT_EQ(folder.Files(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BadInputTest,
    testing::Values(BadInput{"NoModel", {}, "no model"}, BadInput{"MissingModel", {"none.stp"}, "none.stp"},
                    BadInput{"EmptyModel", {"empty.stp"}, "empty.stp"}, BadInput{"TextModel", {"text.stp"}, "text.stp"},
                    BadInput{"TruncatedStep", {"half.stp"}, "half.stp"},
                    BadInput{"TruncatedGlb", {"half.glb"}, "half.glb"}, BadInput{"FolderAsModel", {"."}, "'.'"},
                    BadInput{"UnknownOption", {"MODEL", "--colour"}, "--colour"},
                    BadInput{"UnknownView", {"MODEL", "--view", "inside"}, "--view"},
                    BadInput{"MissingFolder", {"MODEL", "-o", "none/a.svg"}, "none/a.svg: the folder none does not"},
                    BadInput{"MissingPartsFolder", {"MODEL", "--parts", "none/a.csv"}, "none/a.csv"},
                    BadInput{"UnknownFormat", {"MODEL", "-o", "a.gif"}, ".gif"},
                    BadInput{"FolderInTheWay", {"MODEL", "-o", "taken.svg"}, "is a folder"},
                    BadInput{"TemplateNotJson", {"MODEL", "--template", "words.json"}, "words.json: is not JSON"},
                    BadInput{
                        "TemplateFields", {"MODEL", "--template", "fields.json"}, "fields.json: contents is missing"},
                    BadInput{"TemplateMissing", {"MODEL", "--template", "none.json"}, "none.json: cannot be read"},
                    BadInput{"SelectsNothing", {"MODEL", "--select", "gear"}, "--select: 'gear' matches nothing"},
                    BadInput{"WeldsNothing", {"MODEL", "--weld", "gear"}, "--weld: 'gear' matches nothing"}),
    [](const auto& entry) { return entry.param.name; });

}  // namespace
}  // namespace zrfigure
