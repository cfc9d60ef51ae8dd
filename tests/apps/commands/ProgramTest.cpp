// The whole program over real models.

#include <cmath>
#include <fstream>
#include <map>
#include <set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ProgramRunner.h"
#include "visibility/VectorMath.h"

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
  for (const char* part : {"page", "drawings", "labels", "rows"}) report.erase(part);
  return report;
}

/// A value of each label of a report, by what its first leader points at.
std::map<std::string, Json> LabelsByPart(const Json& report, const char* value) {
  std::map<std::string, Json> labels;
  for (const Json& label : report["labels"]) labels[label["leaders"][0]["part"]] = label[value];
  return labels;
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
  EXPECT_EQ(combined["findings"][0]["rule"], "layout") << "two stars of leaders among each other";
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

TEST_F(ProgramTest, SheetShowsTheSameNumbersOnTheSameParts) {
  for (const auto& [order, format] : {std::pair{"item", "number-quantity"}, std::pair{"clockwise", "number"}}) {
    const Arguments arguments{"--order", order, "--template", format};
    Arguments sheet = arguments;
    sheet.insert(sheet.end(), {"--callouts", "2d"});
    const Json scene = Report("MarbleTea.glb", arguments), flat = Report("MarbleTea.glb", sheet);
    EXPECT_EQ(LabelsByPart(flat, "text"), LabelsByPart(scene, "text")) << order;
    const auto boxes = LabelsByPart(flat, "box");
    ASSERT_GT(boxes.size(), 10u);
    for (const auto& [part, box] : LabelsByPart(scene, "box")) {
      EXPECT_NEAR(box[0], boxes.at(part)[0], 0.02) << part;
      EXPECT_NEAR(box[1], boxes.at(part)[1], 0.02) << part;
    }
  }
  const Arguments aligned{"--callouts", "2d", "--align", "max-y"};
  double bottom = 0;
  for (const auto& [part, box] : LabelsByPart(Report("as1-oc-214.stp", aligned), "box")) {
    if (bottom == 0) bottom = box[3];
    EXPECT_NEAR(box[3], bottom, 0.01) << part;
  }
}

TEST_F(ProgramTest, ClockwiseNumbersRunRoundTheFigure) {
  const Json report = Report("MarbleTea.glb", {"--order", "clockwise"});
  Point2 middle;
  Box2 all;
  std::map<int, Point2> places;
  for (const Json& label : report["labels"]) {
    const Json& box = label["box"];
    const Point2 at{(box[0].get<double>() + box[2].get<double>()) / 2,
                    (box[1].get<double>() + box[3].get<double>()) / 2};
    places[std::stoi(label["text"].get<std::string>())] = at;
    all.Add(at);
  }
  middle = all.Centre();
  ASSERT_GT(places.size(), 10u);
  double turned = 0;
  for (auto at = places.begin(), next = std::next(at); next != places.end(); ++at, ++next) {
    const Point2 a = at->second - middle, b = next->second - middle;
    const double turn = std::atan2(a.x * b.y - a.y * b.x, a.x * b.x + a.y * b.y);
    EXPECT_GT(turn, 0) << next->first;
    turned += turn;
  }
  EXPECT_LT(turned, 6.29);
}

TEST_F(ProgramTest, PinnedLabelsStayWhereThatIsGood) {
  const Json before = Report("MarbleTea.glb", {"-o", "before.svg", "--page", "A3"});
  std::ofstream(folder_.Path() / "before.json") << before.dump();
  const auto old = LabelsByPart(before, "box");
  for (const char* pin : {"before.svg", "before.json"}) {
    const Json after = Report("MarbleTea.glb", {"--page", "A3", "--select", "p*", "--select", "j*", "--pin", pin});
    const auto labels = LabelsByPart(after, "box");
    ASSERT_GE(labels.size(), 4u);
    std::size_t kept = 0;
    for (const auto& [part, box] : labels) {
      const auto found = old.find(part);
      kept += found != old.end() && std::abs(found->second[0].get<double>() - box[0].get<double>()) < 0.01 ? 1 : 0;
    }
    EXPECT_GE(kept + 1, labels.size()) << pin;
  }
  // On a page half the size most of the old places are off it or over the drawing: they are given up, not kept.
  const Json small = Report("MarbleTea.glb", {"--page", "A4", "--pin", "before.json"});
  EXPECT_EQ(small["findings"][0]["rule"], "label-moved");
  EXPECT_EQ(small["layout"], (Json{{"leaderCrossings", 0}, {"labelOverlaps", 0}, {"labelsOverModel", 0}}));
}

TEST_F(ProgramTest, EachItemIsCalledOutInOneOfSeveralViews) {
  const Json one = Report("as1-oc-214.stp", {"--per-instance"});
  const Json two = Report("as1-oc-214.stp", {"--per-instance", "--view", "iso", "--view", "bottom"});
  EXPECT_EQ(two["drawings"].size(), 2u);
  EXPECT_EQ(two["callouts"], one["callouts"]);
  const auto hidden = [](const Json& report) {
    int count = 0;
    for (const Json& label : report["labels"]) count += label["leaders"][0]["hidden"].get<bool>() ? 1 : 0;
    return count;
  };
  EXPECT_LT(hidden(two), hidden(one)) << "the bottom shows what iso hides";
  std::set<bool> views;
  for (const auto& [part, text] : LabelsByPart(two, "text")) views.insert(part.rfind("2/", 0) == 0);
  EXPECT_EQ(views.size(), 2u);
}

TEST_F(ProgramTest, CheckFindsWhatAnEditBroke) {
  Report("MarbleTea.glb", {"-o", "good.svg", "--list", "on", "--frame"});
  const auto check = [&](const Arguments& arguments) {
    Arguments all{"check"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunProgram(all, folder_.Path());
  };
  const ProgramResult good = check({"good.svg"});
  EXPECT_EQ(good.exitCode, 0) << good.output;
  EXPECT_EQ(good.output, "good.svg: no findings\n");
  // A row stands for another item now: the callout has none any more, and the item no callout.
  std::string svg = ReadFile(folder_.Path() / "good.svg");
  const std::size_t row = svg.find("id=\"row-2\"");
  ASSERT_NE(row, std::string::npos);
  svg.replace(svg.find("data-item=\"2\"", row), 13, "data-item=\"99\"");
  std::ofstream(folder_.Path() / "bad.svg") << svg;
  const ProgramResult bad = check({"bad.svg", "--format", "sarif"});
  EXPECT_EQ(bad.exitCode, 1);
  const Json run = Json::parse(bad.output)["runs"][0];
  std::set<std::string> known, found;
  for (const Json& rule : run["tool"]["driver"]["rules"]) known.insert(rule["id"]);
  for (const Json& result : run["results"]) {
    found.insert(result["ruleId"]);
    EXPECT_EQ(result["locations"][0]["physicalLocation"]["artifactLocation"]["uri"], "bad.svg");
  }
  EXPECT_EQ(found, (std::set<std::string>{"callout-not-listed", "item-not-shown"}));
  EXPECT_EQ(known.count("callout-not-listed"), 1u);
  // All labels in one column stand over each other; the model itself is drawn for that.
  const ProgramResult model = check({ModelPath("as1-oc-214.stp"), "--align", "min-x", "--format", "json"});
  EXPECT_EQ(model.exitCode, 1);
  EXPECT_EQ(Json::parse(model.output)["findings"][0]["rule"], "labels-overlap");
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
                    BadInput{"WeldsNothing", {"MODEL", "--weld", "gear"}, "--weld: 'gear' matches nothing"},
                    BadInput{"PinMissing", {"MODEL", "--pin", "none.svg"}, "none.svg: cannot be read"},
                    BadInput{"PinNoReport", {"MODEL", "--pin", "fields.json"}, "fields.json: is no report"},
                    BadInput{"SheetShowsPartProperty",
                             {"MODEL", "--callouts", "2d", "--template", "number-name"},
                             "shows the part property 'name'"},
                    BadInput{"AxisTowardViewer",
                             {"MODEL", "--view", "front", "--align", "axis-y"},
                             "--align: the axis points at the viewer"},
                    BadInput{"CheckMissing", {"check", "none.svg"}, "none.svg: cannot be read"},
                    BadInput{"CheckNoFigure", {"check", "fields.json"}, "fields.json: is no report"},
                    BadInput{"CheckNoModel", {"check", "text.stp"}, "text.stp"}),
    [](const auto& entry) { return entry.param.name; });

}  // namespace
}  // namespace zrfigure
