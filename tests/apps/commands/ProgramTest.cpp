// The whole program over real models.

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

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
using namespace nlohmann::literals;

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
    EXPECT_EQ(std::pair(result.exitCode, result.errors), std::pair(0, std::string()));
    return Json::parse(result.output, nullptr, false);
  }

  ScratchFolder folder_;
};

/// A value of each label of a report, by what its first leader points at.
std::map<std::string, Json> LabelsByPart(const Json& report, const char* value) {
  std::map<std::string, Json> labels;
  for (const Json& label : report["labels"]) labels[label["leaders"][0]["part"]] = label[value];
  return labels;
}

/// The fields of a report that are expected have their values.
void ExpectFields(const Json& report, const Json& expected) {
  for (const auto& [field, value] : expected.items()) EXPECT_EQ(report[field], value) << field;
}

const Json kGoodLayout{{"leaderCrossings", 0}, {"labelOverlaps", 0}, {"labelsOverModel", 0}};

TEST_F(ProgramTest, As1GetsFiveCalloutsFromStepAndFromGlb) {
  for (const char* model : {"as1-oc-214.stp", "as1-oc-214.glb"}) {
    SCOPED_TRACE(model);
    const Json report = Report(model, {"--parts", "parts.json"});
    ExpectFields(report, R"({"occurrences":18, "parts":5, "items":5, "callouts":5, "leaders":18, "visibleLeaders":5,
                             "findings":[], "outputs":["as1-oc-214.svg", "parts.json"]})"_json);
    EXPECT_EQ(report["layout"], kGoodLayout);
    for (const char* phase : {"import", "generate", "layout", "draw"}) EXPECT_GE(report["seconds"][phase], 0) << phase;
    const Json parts = Json::parse(ReadFile(folder_.Path() / "parts.json"));
    Arguments rows;
    for (const Json& item : parts["items"]) {
      rows.push_back(item["item"].get<std::string>() + item["name"].get<std::string>() + item["quantity"].dump());
    }
    EXPECT_EQ(rows, (Arguments{"1nut8", "2rod1", "3bolt6", "4l-bracket2", "5plate1"}));
  }
}

TEST_F(ProgramTest, OptionsReachTheFigure) {
  const std::tuple<std::string, Arguments, Json> cases[] = {
      {"as1-oc-214.stp", {"--combine"}, {{"callouts", 5}, {"visibleLeaders", 18}}},
      {"as1-oc-214.stp", {"--per-instance"}, {{"callouts", 18}, {"visibleLeaders", 18}}},
      {"as1-oc-214.stp", {"--select", "nut*"}, {{"items", 1}}},
      {"as1-oc-214.stp", {"--level", "1"}, {{"callouts", 3}}},
      {"as1-oc-214.stp", {"--numbering", "hierarchical"}, {{"items", 8}}},
      {"as1-oc-214.stp", {"--weld", "rod-assembly"}, {{"items", 5}}},
      {"MarbleTea.stp", {}, {{"occurrences", 22}, {"items", 16}, {"layout", kGoodLayout}}}};
  for (const auto& [model, arguments, expected] : cases) {
    SCOPED_TRACE(model + " " + Json(arguments).dump());
    ExpectFields(Report(model, arguments), expected);
  }
}

// Scripts, figures and checks, in two folders.
TEST_F(ProgramTest, EveryOutputHasTheSameBytesTwice) {
  const std::string model = (fs::path(ZR_SOURCE_DIR) / "examples/drive-unit.step").string();
  const Arguments runs[] = {
      {model, "-o", "a.svg", "--parts", "a.csv", "--view", "iso", "--view", "back", "--order", "clockwise", "--quiet"},
      {model, "-o", "b.html", "--parts", "c.html", "--callouts", "2d", "--quiet"},
      {"run", "script.zrf"},
      {"check", "a.svg", "--format", "sarif"}};
  std::map<std::string, std::string> bytes[2];
  for (auto& of : bytes) {
    const ScratchFolder folder;
    folder.Write("script.zrf", "open " + model +
                                   "\nselect *\ngenerate\nalign max-x 1 2 3\nwrite e.svg\nwrite e.pdf\nwrite e.png\n"
                                   "write e.html\nwrite e.csv\nwrite e.json\ndump\n");
    for (const Arguments& run : runs) {
      const ProgramResult result = RunProgram(run, folder.Path());
      EXPECT_EQ(result.errors, "");
      of["output of " + run.front() + ' ' + run[1]] += result.output;
    }
    for (const std::string& file : folder.Files()) of[file] = ReadFile(folder.Path() / file);
  }
  EXPECT_GE(bytes[0].size(), 11u + 3u) << "files, and what check and run say";
  for (const auto& [name, content] : bytes[0]) EXPECT_TRUE(content == bytes[1][name]) << name;
}

TEST_F(ProgramTest, HiddenItemIsAFindingThatStrictReports) {
  const std::string model = ModelPath("Mykroscope.step");
  const ProgramResult result = RunProgram({model, "--json", "--strict"}, folder_.Path());
  EXPECT_EQ(result.exitCode, 1) << result.errors;
  const Json report = Json::parse(result.output, nullptr, false);
  EXPECT_EQ(report["findings"][0]["rule"], "item-not-visible");
  EXPECT_GE(report["findings"][0]["item"], 1);
  EXPECT_EQ(RunProgram({model, "--quiet"}, folder_.Path()).exitCode, 0);
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
  Box2 all;
  std::map<int, Point2> places;
  for (const Json& label : report["labels"]) {
    const auto box = label["box"].get<std::array<double, 4>>();
    const Point2 at = Box2{box[0], box[1], box[2], box[3]}.Centre();
    places[std::stoi(label["text"].get<std::string>())] = at;
    all.Add(at);
  }
  const Point2 middle = all.Centre();
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
  folder_.Write("before.json", before.dump());
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
  EXPECT_EQ(small["layout"], kGoodLayout);
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
  const auto check = [&](Arguments arguments) {
    arguments.insert(arguments.begin(), "check");
    return RunProgram(arguments, folder_.Path());
  };
  const ProgramResult good = check({"good.svg"});
  EXPECT_EQ(good.exitCode, 0) << good.output;
  EXPECT_EQ(good.output, "good.svg: no findings\n");
  // A row stands for another item now: the callout has none any more, and the item no callout.
  std::string svg = ReadFile(folder_.Path() / "good.svg");
  const std::size_t row = svg.find("id=\"row-2\"");
  ASSERT_NE(row, std::string::npos);
  svg.replace(svg.find("data-item=\"2\"", row), 13, "data-item=\"99\"");
  folder_.Write("bad.svg", svg);
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
  folder_.Write("pos.json", R"({"id":"pos","name":"Position","itemTemplate":true,"contents":[{"text":"Item "},
           {"group":"System","name":"zrITM","display":"Value","level":""}],
           "leaderPen":{"weight":0.25,"unit":"mm"},"translations":{"de":"Pos. {0}"}})");
  Report("as1-oc-214.stp", {"--template", "pos.json", "--lang", "de"});
  const std::string svg = ReadFile(folder_.Path() / "as1-oc-214.svg");
  EXPECT_NE(svg.find("Pos. 5"), std::string::npos);
  EXPECT_NE(svg.find("Benennung"), std::string::npos);
  EXPECT_EQ(svg.find("Item 5"), std::string::npos);
}

using Row = std::pair<const char*, const char*>;

/// Of bad files in the folder and bad arguments; MODEL stands for a good file.
TEST_F(ProgramTest, BadInputIsOneLineAndLeavesNothing) {
  folder_.Write("text.stp", "This is no model.\n");
  folder_.Write("words.json", "no template");
  folder_.Write("fields.json", R"({"id":"x","name":"x"})");
  fs::create_directory(folder_.Path() / "taken.svg");
  const Row cases[] = {{"", "no model"},
                       {"none.stp", "none.stp"},
                       {"MODEL --colour", "--colour"},
                       {"MODEL -o none/a.svg", "none/a.svg: the folder none does not"},
                       {"MODEL --parts none/a.csv", "none/a.csv"},
                       {"MODEL -o taken.svg", "is a folder"},
                       {"MODEL --template words.json", "words.json: is not JSON"},
                       {"MODEL --template none.json", "none.json: cannot be read"},
                       {"MODEL --select gear", "--select: 'gear' matches nothing"},
                       {"MODEL --weld gear", "--weld: 'gear' matches nothing"},
                       {"MODEL --pin none.svg", "none.svg: cannot be read"},
                       {"MODEL --pin fields.json", "fields.json: is no report"},
                       {"MODEL --callouts 2d --template number-name", "shows the part property 'name'"},
                       {"MODEL --view front --align axis-y", "--align: the axis points at the viewer"},
                       {"check none.svg", "none.svg: cannot be read"},
                       {"check fields.json", "fields.json: is no report"},
                       {"check text.stp", "text.stp"}};
  const Arguments before = folder_.Files();
  for (const auto& [row, expected] : cases) {
    SCOPED_TRACE(row);
    std::istringstream words(row);
    Arguments arguments{std::istream_iterator<std::string>(words), {}};
    std::replace(arguments.begin(), arguments.end(), std::string("MODEL"), ModelPath("as1-oc-214.stp"));
    const ProgramResult result = RunProgram(arguments, folder_.Path());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors.rfind("zrfigure: ", 0), 0u) << result.errors;
    EXPECT_NE(result.errors.find(expected), std::string::npos) << result.errors;
    EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
    EXPECT_EQ(folder_.Files(), before);
  }
}

}  // namespace
}  // namespace zrfigure
