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
using fixtures::RunProgram;
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

  TemporaryFolder folder_;
};

/// A value of each label of a report, by what its first leader points at.
std::map<std::string, Json> LabelsByPart(const Json& report, const char* value) {
  std::map<std::string, Json> labels;
  for (const Json& label : report["labels"]) labels[label["leaders"][0]["part"]] = label[value];
  return labels;
}

const Json kGoodLayout{{"leaderCrossings", 0}, {"labelOverlaps", 0}, {"labelsOverModel", 0}};

TEST_F(ProgramTest, OptionsReachTheFigure) {
  const Json as1 = R"({"occurrences":18, "parts":5, "items":5, "callouts":5, "leaders":18, "visibleLeaders":5,
                       "findings":[], "outputs":["as1-oc-214.svg", "parts.csv"]})"_json;
  const std::tuple<std::string, Arguments, Json> cases[] = {
      {"as1-oc-214.stp", {"--parts", "parts.csv"}, as1},
      {"as1-oc-214.glb", {"--parts", "parts.csv"}, as1},
      {"as1-oc-214.stp", {"--combine"}, {{"callouts", 5}, {"visibleLeaders", 18}}},
      {"as1-oc-214.stp", {"--per-instance"}, {{"callouts", 18}, {"visibleLeaders", 18}}},
      {"as1-oc-214.stp", {"--select", "nut*"}, {{"items", 1}}},
      {"as1-oc-214.stp", {"--level", "1"}, {{"callouts", 3}}},
      {"as1-oc-214.stp", {"--numbering", "hierarchical"}, {{"items", 8}}},
      {"as1-oc-214.stp", {"--weld", "rod-assembly"}, {{"items", 5}}},
      {"MarbleTea.stp", {}, {{"occurrences", 22}, {"items", 16}}}};
  for (const auto& [model, arguments, expected] : cases) {
    SCOPED_TRACE(model + " " + Json(arguments).dump());
    const Json report = Report(model, arguments);
    for (const auto& [field, value] : expected.items()) EXPECT_EQ(report[field], value) << field;
    EXPECT_TRUE(arguments.size() == 1 || report["layout"] == kGoodLayout) << report["layout"];
    if (expected == as1) {
      EXPECT_EQ(ReadWholeFile(folder_.Path() / "parts.csv"),
                "item,quantity,tag,name\r\n1,8,,nut\r\n2,1,,rod\r\n3,6,,bolt\r\n4,2,,l-bracket\r\n5,1,,plate\r\n");
    }
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
    const TemporaryFolder folder;
    folder.Write("script.zrf", "open " + model +
                                   "\nselect *\ngenerate\nalign max-x 1 2 3\nwrite e.svg\nwrite e.pdf\nwrite e.png\n"
                                   "write e.html\nwrite e.csv\nwrite e.json\ndump\n");
    for (const Arguments& run : runs) {
      const ProgramResult result = RunProgram(run, folder.Path());
      EXPECT_EQ(result.errors, "");
      of["output of " + run.front() + ' ' + run[1]] += result.output;
    }
    for (const std::string& file : folder.Files()) of[file] = ReadWholeFile(folder.Path() / file);
  }
  EXPECT_GE(bytes[0].size(), 11u + 3u) << "files, and what check and run say";
  for (const auto& [name, content] : bytes[0]) EXPECT_TRUE(content == bytes[1][name]) << name;
}

TEST_F(ProgramTest, HiddenItemIsAFindingThatStrictReportsOrSkipped) {
  const std::string model = ModelPath("Mykroscope.step");
  const ProgramResult result = RunProgram({model, "--json", "--strict"}, folder_.Path());
  EXPECT_EQ(result.exitCode, 1) << result.errors;
  EXPECT_EQ(Json::parse(result.output)["findings"][0]["rule"], "item-not-visible");
  EXPECT_EQ(RunProgram({model, "--quiet"}, folder_.Path()).exitCode, 0);
  EXPECT_EQ(RunProgram({model, "--skip-hidden", "--strict", "--quiet"}, folder_.Path()).exitCode, 0);
  EXPECT_EQ(RunProgram({"check", "Mykroscope.svg"}, folder_.Path()).exitCode, 0) << "the row is marked instead";
  const ProgramResult all = RunProgram({model, "--skip-hidden", "--select", "Stage Holder"}, folder_.Path());
  EXPECT_EQ(all.errors, "zrfigure: --skip-hidden: nothing selected can be seen\n");
}

TEST_F(ProgramTest, SheetShowsTheSameNumbersOnTheSameParts) {
  const Arguments cases[] = {{"--template", "number-quantity"}, {"--order", "clockwise"}, {"--align", "max-y"}};
  for (const Arguments& arguments : cases) {
    Arguments sheet = arguments;
    sheet.insert(sheet.end(), {"--callouts", "2d"});
    const Json scene = Report("MarbleTea.glb", arguments), flat = Report("MarbleTea.glb", sheet);
    EXPECT_EQ(LabelsByPart(flat, "text"), LabelsByPart(scene, "text")) << arguments[1];
    const auto boxes = LabelsByPart(flat, "box");
    ASSERT_GT(boxes.size(), 10u);
    for (const auto& [part, box] : LabelsByPart(scene, "box")) {
      for (int side : {0, 1}) EXPECT_NEAR(box[side], boxes.at(part)[side], 0.02) << part << arguments[1];
    }
  }
}

TEST_F(ProgramTest, ClockwiseNumbersRunRoundTheFigure) {
  const Json report = Report("MarbleTea.glb", {"--order", "clockwise"});
  Box2 all;
  std::map<int, Point2> places;
  for (const Json& label : report["labels"]) {
    const Point2 at = (Point2{label["box"][0], label["box"][1]} + Point2{label["box"][2], label["box"][3]}) * 0.5;
    places[std::stoi(label["text"].get<std::string>())] = at;
    all.Add(at);
  }
  ASSERT_GT(places.size(), 10u);
  double turned = 0;
  for (auto at = places.begin(), next = std::next(at); next != places.end(); ++at, ++next) {
    const Point2 a = at->second - all.Centre(), b = next->second - all.Centre();
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
    const auto kept = std::count_if(labels.begin(), labels.end(), [&](const auto& label) {
      const auto found = old.find(label.first);
      return found != old.end() &&
             std::abs(found->second[0].template get<double>() - label.second[0].template get<double>()) < 0.01;
    });
    EXPECT_GE(kept + 1, static_cast<long>(labels.size())) << pin;
  }
  // On a page half the size most of the old places are off it or over the drawing: they are given up, not kept.
  const Json small = Report("MarbleTea.glb", {"--page", "A4", "--pin", "before.json"});
  EXPECT_EQ(small["findings"][0]["rule"], "label-moved");
  EXPECT_EQ(small["layout"], kGoodLayout);
}

TEST_F(ProgramTest, EachItemIsCalledOutInOneOfSeveralViews) {
  const Json one = Report("as1-oc-214.stp", {"--per-instance"});
  const Json two = Report("as1-oc-214.stp", {"--per-instance", "--view", "iso", "--view", "bottom"});
  EXPECT_EQ(two["callouts"], one["callouts"]);
  const auto hidden = [](const Json& report) {
    return std::count_if(report["labels"].begin(), report["labels"].end(),
                         [](const Json& label) { return label["leaders"][0]["hidden"] == true; });
  };
  EXPECT_LT(hidden(two), hidden(one)) << "the bottom shows what iso hides";
  std::set<bool> views;
  for (const auto& [part, text] : LabelsByPart(two, "text")) views.insert(part.rfind("2/", 0) == 0);
  EXPECT_EQ(views.size(), 2u);
}

TEST_F(ProgramTest, CheckFindsWhatAnEditBroke) {
  Report("MarbleTea.glb", {"-o", "good.svg", "--list", "on", "--frame"});
  const ProgramResult good = RunProgram({"check", "good.svg"}, folder_.Path());
  EXPECT_EQ(std::pair(good.exitCode, good.output), std::pair(0, std::string("good.svg: no findings\n")));
  // A row stands for another item now: the callout has none any more, and the item no callout.
  std::string svg = ReadWholeFile(folder_.Path() / "good.svg");
  const std::size_t row = svg.find("id=\"row-2\"");
  ASSERT_NE(row, std::string::npos);
  svg.replace(svg.find("data-item=\"2\"", row), 13, "data-item=\"99\"");
  folder_.Write("bad.svg", svg);
  const ProgramResult bad = RunProgram({"check", "bad.svg", "--format", "sarif"}, folder_.Path());
  EXPECT_EQ(bad.exitCode, 1);
  const Json run = Json::parse(bad.output)["runs"][0];
  std::set<std::string> found;
  for (const Json& result : run["results"]) {
    found.insert(result["ruleId"]);
    EXPECT_EQ(result["locations"][0]["physicalLocation"]["artifactLocation"]["uri"], "bad.svg");
  }
  EXPECT_EQ(found, (std::set<std::string>{"callout-not-listed", "item-not-shown"}));
  EXPECT_NE(run["tool"]["driver"]["rules"].dump().find("callout-not-listed"), std::string::npos);
  // All labels in one column stand over each other; the model itself is drawn for that.
  const ProgramResult model =
      RunProgram({"check", ModelPath("as1-oc-214.stp"), "--align", "min-x", "--format", "json"}, folder_.Path());
  EXPECT_EQ(model.exitCode, 1);
  EXPECT_EQ(Json::parse(model.output)["findings"][0]["rule"], "labels-overlap");
}

TEST_F(ProgramTest, LanguageReachesLabelsAndHeadings) {
  Report("as1-oc-214.stp", {"--template", ZR_SOURCE_DIR "/examples/item.json", "--lang", "de"});
  const std::string svg = ReadWholeFile(folder_.Path() / "as1-oc-214.svg");
  for (const char* text : {"Pos. 5", "Benennung"}) EXPECT_NE(svg.find(text), std::string::npos) << text;
  EXPECT_EQ(svg.find("Item 5"), std::string::npos);
}

/// Of bad files in the folder and bad arguments; MODEL stands for a good file.
TEST_F(ProgramTest, BadInputIsOneLineAndLeavesNothing) {
  folder_.Write("text.stp", "This is no model.\n");
  folder_.Write("words.json", "no template");
  folder_.Write("fields.json", R"({"id":"x","name":"x"})");
  fs::create_directory(folder_.Path() / "taken.svg");
  const std::pair<const char*, const char*> cases[] = {
      {"none.stp", "none.stp"},
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
