#include <algorithm>
#include <sstream>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "../commands/ProgramRunner.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;
using fixtures::ProgramResult;

const fs::path kExamples = fs::path(ZR_SOURCE_DIR) / "examples";
const std::string kOpen = "open " + (kExamples / "drive-unit.step").string() + "\nsettings combine\n";
const std::string kGenerate = kOpen + "generate\n";
const std::string kAssemblies = kOpen + "select --level 1\ngenerate\n";
const std::string kFront = kGenerate + "view front\nwrite f.svg\n";
const std::string kJoined = kGenerate + "join 13 14 15\n";
const std::string kHidden = kGenerate + "hide 'Terminal box 1'\nremove-from-item 5 'Stud bolt 4'\n";
const std::string kQuantity = kGenerate + "replace-template number-quantity\n";
const std::string kWithoutItems = kOpen + "template name.json\ngenerate\n";
const std::string kNames = kOpen + "template number-name\ngenerate\n";
const std::string kSymbol = kOpen + "template name.json\nadd-symbol 'Terminal box 1'\ngenerate symbols\n";
const std::string kTranslated = kOpen + "template item.json\ngenerate\n";

ProgramResult RunScript(const std::string& script, const std::vector<std::string>& arguments = {"run", "s.zrf"}) {
  const TemporaryFolder folder;
  folder.Write("s.zrf", script);
  folder.Write("item.json", R"({"id": "i", "name": "I", "itemTemplate": true, "contents": [{"text": "Item "},
    {"group": "System", "name": "zrITM"}, {"text": " x"}, {"group": "System", "name": "zrQTY"}],
    "translations": {"de": "Pos. {0}: {1} St."}})");
  folder.Write("name.json", R"({"id": "n", "name": "N", "contents": [{"text": "Part "}, {"group": "", "name": "name"}],
    "translations": {"de": "Teil {0}"}})");
  return fixtures::RunProgram(arguments, folder.Path(), folder.Path() / "s.zrf");
}

/// What each command called `word` printed, without the command itself.
std::vector<std::string> AnswersOf(const std::string& output, const std::string& word) {
  std::vector<std::string> answers;
  const std::string mark = "> " + word + "\n";
  for (auto at = output.find(mark); at != std::string::npos; at = output.find(mark, at + 1)) {
    const auto begin = output.find('\n', at) + 1;
    answers.push_back(output.substr(begin, output.find("> ", begin) - begin));
  }
  return answers;
}

TEST(ScriptTest, WalkthroughGivesItsTranscript) {
  const ProgramResult result = fixtures::RunProgram({"run", "walkthrough.zrf"}, kExamples);
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  EXPECT_EQ(result.output, ReadWholeFile(kExamples / "walkthrough.txt"));
}

TEST(ScriptTest, CalloutsReactToEditsAndUndoIsExact) {
  struct Case {
    const std::string& setup;
    const char* edit;
    const char* change;
  };
  // Cases of one setup follow each other on one model: each is undone before the next.
  const Case cases[] = {
      {kGenerate, "move 'Electric motor 1' 0 0 80", "3 labels moved, 3 leaders moved\n"},
      {kGenerate, "hide 'Electric motor 1'", "3 leaders hidden\n"},
      {kGenerate, "remove-item 9", "callout 9 removed\n"},
      {kGenerate, "remove 'Coupling hub 2'", "1 leader removed\n"},
      {kGenerate, "replace-template name.json", "18 labels changed\n"},
      {kGenerate, "align axis-z --distribute 2 3 4", "3 labels moved\n"},
      {kGenerate, "align line --line -100,0,400 100,0,450 5 6 7", "3 labels moved\n"},
      {kFront, "arrange", "18 labels moved\n"},
      {kFront, "arrange 4 5", "2 labels moved\n"},
      {kGenerate, "note '{item} x {quantity}' 30 20 5", "note 1: 5 x 4\nno callout changed\n"},
      {kGenerate, "add-inset 'Drive shaft 1' Detail", "inset 19 added\nno callout changed\n"},
      {kGenerate, "clear-items", "18 callouts removed\n"},
      {kHidden, "show 'Terminal box 1'", "1 leader shown\n"},
      {kHidden, "add-to-item 8 'Stud bolt 4'", "1 leader added\n"},
      {kJoined, "remove-item 14", "1 label changed\n"},
      {kQuantity, "set-quantity 8 3", "1 label changed\n"},
      {kQuantity, "replace-template number", "18 labels changed\n"},
      {kNames, "set-property 'Bearing*' name Bearing", "4 parts changed\n2 labels changed\n"},
      {kAssemblies, "move 'Motor housing 1' 0 0 81", "1 label moved, 1 leader moved\n"},
      {kSymbol, "remove-symbol 'Terminal box 1'", "symbol 1 removed\ncallout 2 removed\n"},
      {kWithoutItems, "remove 'Terminal box 1'", "callout 15 removed\n"},
  };
  for (auto first = std::begin(cases), last = first; first != std::end(cases); first = last) {
    std::string script = first->setup;
    for (; last != std::end(cases) && &last->setup == &first->setup; ++last) {
      script.append("dump\n").append(last->edit).append("\ndump\nundo\ndump\nredo\ndump\nundo\n");
    }
    const ProgramResult result = RunScript(script);
    const auto dumps = AnswersOf(result.output, "dump");
    ASSERT_EQ(dumps.size(), 4 * static_cast<std::size_t>(last - first)) << result.errors;
    auto dump = dumps.begin();
    for (const Case* c = first; c != last; ++c, dump += 4) {
      EXPECT_EQ(AnswersOf(result.output, c->edit), std::vector<std::string>{c->change}) << c->edit;
      EXPECT_NE(dump[0], dump[1]) << c->edit;
      EXPECT_EQ(dump[1], dump[3]) << c->edit;
      EXPECT_EQ(dump[0], dump[2]) << c->edit;
    }
  }
}

TEST(ScriptTest, TemplatesFollowTheLanguageAlsoThroughUndo) {
  // Lines behind the translated template's callouts, and the text of callout 8 then.
  const std::pair<const char*, const char*> cases[] = {
      {"", "Item 8 x1"},
      {"language fr\n", "Item 8 x1"},
      {"language de\nset-quantity 8 5\n", "Pos. 8: 5 St."},
      {"set-quantity 8 5\nlanguage de\nundo\n", "Pos. 8: 1 St."},
      {"language de\nundo\nredo\nlanguage en\n", "Item 8 x1"},
      {"replace-template name.json\nlanguage de\n", "Teil Drive shaft"},
      {"replace-template name.json\nlanguage de\nundo\n", "Pos. 8: 1 St."},
      {"edit-template 'No. {0}'\nlanguage de\n", "No. 8"},
      {"edit-template 'No. {0}'\nlanguage de\nundo\n", "Pos. 8: 1 St."},
      {"set-tag 8 spare\nreplace-template number-tag\n", "8 spare"},
      {"delete-callout 8\nlanguage de\nundo\n", "Pos. 8: 1 St."}};
  for (const auto& [lines, text] : cases) {
    const ProgramResult result = RunScript(kTranslated + lines + "dump\n");
    EXPECT_NE(result.output.find(std::string("'") + text + "'\n  leader Drive unit/Drive shaft 1"), std::string::npos)
        << lines << result.errors << AnswersOf(result.output, "dump").back();
  }
}

TEST(ScriptTest, JsonTellsHowOftenLabelsAndViewsWereRenewed) {
  // Lines, and labels written and redraws by the last one.
  const std::tuple<const char*, int, int> cases[] = {
      {"set-property '**' name Part", 18, 1},
      {"clear-items", 0, 1},
      {"clear-items\nundo\nundo\nadd-to-item new 'Drive shaft 1'\nclear-items", 0, 0}};
  for (const auto& [lines, labelsWritten, redraws] : cases) {
    const ProgramResult result = RunScript(kNames + lines + "\n", {"run", "--json", "s.zrf"});
    ASSERT_EQ(result.exitCode, 0) << lines << result.errors;
    const auto last = nlohmann::json::parse(result.output.substr(result.output.rfind("{\"line\"")));
    EXPECT_TRUE(last["labelsWritten"] == labelsWritten && last["redraws"] == redraws) << lines << last;
  }
}

TEST(ScriptTest, WrongCommandsAreToldAndChangeNothing) {
  // A row is "COMMAND => MESSAGE".
  std::istringstream rows(ReadWholeFile(ZR_SOURCE_DIR "/tests/apps/script/mistakes.txt"));
  std::string script = kGenerate + "dump\n", messages;
  int number = 4;
  for (std::string row; std::getline(rows, row);) {
    const std::size_t arrow = row.find(" => ");
    script += row.substr(0, arrow) + "\n";
    messages += "stdin:" + std::to_string(++number) + ": " + row.substr(arrow + 4) + "\n";
  }
  EXPECT_GT(number, 30);
  const ProgramResult result = RunScript(script + "dump\n", {"shell"});
  EXPECT_EQ(result.errors, messages);
  const auto first = result.output.find("part Drive unit '"),
             second = result.output.find("part Drive unit '", first + 1);
  ASSERT_NE(second, std::string::npos);
  EXPECT_EQ(result.output.substr(first, second - first), result.output.substr(second));
}

TEST(ScriptTest, ScriptStopsAtAWrongCommandWithItsFileAndLine) {
  const ProgramResult result = RunScript("help quit\n# next\n\ngenerate\nhelp\n");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.errors, "s.zrf:4: no model is open: begin with open MODEL\n");
  EXPECT_EQ(AnswersOf(result.output, "help").size(), 0u);
  EXPECT_EQ(RunScript("quit\ngenerate\n").exitCode, 0) << "nothing behind quit is run";
}

// Labels of another view lie over the drawing and each other. A route that led to a label's old place is given up:
// leaders of aligned labels go straight.
TEST(ScriptTest, ArrangedLabelsStandClearAndLeadersOfAlignedOnesGoStraight) {
  const TemporaryFolder folder;
  folder.Write("s.zrf", kGenerate + "align axis-y 1 2 3 4 5 6 7 8\nwrite aligned.svg\nundo\n" +
                            "view front\nwrite before.svg\narrange\nwrite after.svg\n");
  const ProgramResult result = fixtures::RunProgram({"run", "s.zrf"}, folder.Path());
  ASSERT_EQ(result.exitCode, 0) << result.errors;
  const auto says = [&](const char* figure, const char* rule) {
    return fixtures::RunProgram({"check", figure}, folder.Path()).output.find(rule) != std::string::npos;
  };
  for (const char* rule : {"labels-overlap", "label-over-drawing", "leader-through-label"}) {
    EXPECT_TRUE(says("before.svg", rule)) << rule;
    EXPECT_FALSE(says("after.svg", rule)) << rule;
  }
  const std::string svg = ReadWholeFile(folder.Path() / "aligned.svg");
  for (const char* leader : {"leader-1-1", "leader-2-1", "leader-5-1", "leader-8-1"}) {
    const auto path = svg.find(" d=\"", svg.find(leader)), end = svg.find("/>", path);
    EXPECT_EQ(std::count(svg.begin() + static_cast<long>(path), svg.begin() + static_cast<long>(end), 'L'), 1)
        << leader;
  }
}

}  // namespace
}  // namespace zrfigure
