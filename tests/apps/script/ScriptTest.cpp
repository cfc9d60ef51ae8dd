#include <algorithm>
#include <fstream>
#include <sstream>
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
  const fixtures::ScratchFolder folder;
  std::ofstream(folder.Path() / "s.zrf") << script;
  std::ofstream(folder.Path() / "item.json") << R"({"id": "i", "name": "I", "markdown": false, "itemTemplate": true,
    "contents": [{"text": "Item "}, {"group": "System", "name": "zrITM"}, {"text": " x"},
                 {"group": "System", "name": "zrQTY"}], "translations": {"de": "Pos. {0}: {1} St."}})";
  std::ofstream(folder.Path() / "name.json") << R"({"id": "n", "name": "N", "markdown": false, "itemTemplate": false,
    "contents": [{"text": "Part "}, {"group": "", "name": "name"}], "translations": {"de": "Teil {0}"}})";
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
  EXPECT_EQ(result.output, fixtures::ReadFile(kExamples / "walkthrough.txt"));
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

TEST(ScriptTest, CombinedCalloutLosesTheItemThatGoes) {
  const ProgramResult result = RunScript(kJoined + "callouts\nremove-item 14\ncallouts\n");
  const auto tables = AnswersOf(result.output, "callouts");
  ASSERT_EQ(tables.size(), 2u) << result.errors;
  EXPECT_NE(tables[0].find("  13 / 14 / 15  "), std::string::npos) << tables[0];
  EXPECT_NE(tables[1].find("  13 / 15  "), std::string::npos) << tables[1];
}

TEST(ScriptTest, TranslatedTemplatesFollowTheLanguageAlsoThroughUndo) {
  struct Case {
    const char* lines;  ///< Behind the translated template's callouts.
    const char* text;   ///< Of callout 8 then.
  };
  const Case cases[] = {{"", "Item 8 x1"},
                        {"language de\n", "Pos. 8: 1 St."},
                        {"language fr\n", "Item 8 x1"},
                        {"language de\nset-quantity 8 5\n", "Pos. 8: 5 St."},
                        {"set-quantity 8 5\nlanguage de\nundo\n", "Pos. 8: 1 St."},
                        {"language de\nundo\nredo\nlanguage en\n", "Item 8 x1"},
                        {"replace-template name.json\nlanguage de\n", "Teil Drive shaft"},
                        {"replace-template name.json\nlanguage de\nundo\n", "Pos. 8: 1 St."},
                        {"edit-template 'No. {0}'\nlanguage de\n", "No. 8"},
                        {"edit-template 'No. {0}'\nlanguage de\nundo\n", "Pos. 8: 1 St."},
                        {"delete-callout 8\nlanguage de\nundo\n", "Pos. 8: 1 St."}};
  for (const Case& c : cases) {
    const ProgramResult result = RunScript(kTranslated + c.lines + "dump\n");
    ASSERT_EQ(result.exitCode, 0) << c.lines << result.errors;
    EXPECT_NE(result.output.find(std::string("'") + c.text + "'\n  leader Drive unit/Drive shaft 1"), std::string::npos)
        << c.lines << AnswersOf(result.output, "dump").back();
  }
}

TEST(ScriptTest, JsonTellsHowOftenLabelsAndViewsWereRenewed) {
  struct Case {
    const char* lines;
    int labelsWritten, redraws;  ///< By the last one.
  };
  const Case cases[] = {{"set-property '**' name Part", 18, 1},
                        {"clear-items", 0, 1},
                        {"clear-items\nundo\nundo\nadd-to-item new 'Drive shaft 1'\nclear-items", 0, 0}};
  for (const Case& c : cases) {
    const ProgramResult result = RunScript(kNames + c.lines + "\n", {"run", "--json", "s.zrf"});
    ASSERT_EQ(result.exitCode, 0) << c.lines << result.errors;
    const auto last = nlohmann::json::parse(result.output.substr(result.output.rfind("{\"line\"")));
    EXPECT_EQ(last["labelsWritten"], c.labelsWritten) << c.lines;
    EXPECT_EQ(last["redraws"], c.redraws) << c.lines;
  }
}

TEST(ScriptTest, WrongCommandsAreToldAndChangeNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"frobnicate", "'frobnicate' is no command; help lists them"},
      {"help frobnicate", "'frobnicate' is no command; help lists them"},
      {"move 'Motor housing 1' 0 0", "too few arguments: move PART DX DY DZ"},
      {"undo 2", "too many arguments: undo"},
      {"move 'Motor housing 1' 0 x 0", "dy 'x' is not a number"},
      {"hide Unicorn", "there is no part 'Unicorn'"},
      {"hide 'Washer 1'", "'Washer 1' names 2 parts: use a path such as 'Drive unit/Washer 1'"},
      {"show 'Terminal box 1'", "'Terminal box 1' is shown already"},
      {"hide 'Terminal", "the quote ' has no end"},
      {"select Unicorn", "'Unicorn' matches nothing"},
      {"select --level x all", "level 'x' is not a whole number of 0 or more"},
      {"settings combine sideways",
       "setting 'sideways' is unknown: use one-per-item, combine, per-instance, flat or hierarchical"},
      {"set-property 'Uni*' a b", "'Uni*' matches no part"},
      {"remove-item 99", "there is no item '99'"},
      {"set-quantity 1 -2", "quantity '-2' is not a whole number of 0 or more"},
      {"add-to-item 1 'Drive shaft 1'", "'Drive shaft 1' is in item 8: remove it from there first"},
      {"delete-callout 99", "there is no callout 99"},
      {"join 1 1", "callout 1 is named twice"},
      {"align diagonal 1 2",
       "mode 'diagonal' is unknown: use one of min-x, center-x, max-x, min-y, center-y, max-y, spread-x, spread-y, "
       "axis-x, axis-y, axis-z, line"},
      {"align line 1 2", "mode line needs --line, and no other mode takes it"},
      {"align line --line 1,2 3,4,5 1 2", "point '1,2' is not of the form x,y,z"},
      {"align line --line 0,0,0 0,0,0 1 2", "the line has no direction on screen"},
      {"remove-inset 99", "there is no inset 99"},
      {"generate symbols", "there is no 3D symbol"},
      {"note text 30 2000", "the place 30 2000 is not on the page"},
      {"view sideways", ""},
      {"resize 0 100", "a window has 1 to 32768 pixels a side"},
      {"background 1 1 2", "blue '2' is not between 0 and 1"},
      {"language xx", "language 'xx' is unknown: use en, de, fr or ja"},
      {"template nothing",
       "template 'nothing' is neither built in (number, number-quantity, number-tag, number-name) "
       "nor a .json file"},
      {"write nowhere/f.svg", ""},
      {"open other.step", "cannot read 'other.step': no such file"},
      {"redo", "there is nothing to redo"},
  };
  std::string lines = kGenerate + "dump\n";
  for (const auto& [line, message] : cases) lines += std::string(line) + "\n";
  const ProgramResult result = RunScript(lines + "dump\n", {"shell"});
  std::istringstream errors(result.errors);
  std::string error;
  std::size_t number = 4;
  for (const auto& [line, message] : cases) {
    const std::string begin = "stdin:" + std::to_string(++number) + ": ";
    ASSERT_TRUE(std::getline(errors, error)) << line;
    EXPECT_EQ(error.substr(0, begin.size()), begin) << line;
    EXPECT_EQ(error, *message == '\0' ? error : begin + message);
  }
  EXPECT_FALSE(std::getline(errors, error)) << error;
  const auto first = result.output.find("part Drive unit '");
  const auto second = result.output.find("part Drive unit '", first + 1);
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

TEST(ScriptTest, SecondModelTakesThePlaceOfTheFirst) {
  const ProgramResult result =
      RunScript(kGenerate + "dump\nlanguage de\n" + kTranslated + "callouts\nundo\nwrite f.csv\n");
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  EXPECT_NE(result.output.find("Pos. 8: 1 St."), std::string::npos);
}

// Labels of another view lie over the drawing and each other.
TEST(ScriptTest, ArrangedLabelsStandClear) {
  const fixtures::ScratchFolder folder;
  std::ofstream(folder.Path() / "s.zrf") << kGenerate << "view front\nwrite before.svg\narrange\nwrite after.svg\n";
  const ProgramResult result = fixtures::RunProgram({"run", "s.zrf"}, folder.Path());
  ASSERT_EQ(result.exitCode, 0) << result.errors;
  const auto says = [&](const char* figure, const char* rule) {
    return fixtures::RunProgram({"check", figure}, folder.Path()).output.find(rule) != std::string::npos;
  };
  for (const char* rule : {"labels-overlap", "label-over-drawing", "leader-through-label"}) {
    EXPECT_TRUE(says("before.svg", rule)) << rule;
    EXPECT_FALSE(says("after.svg", rule)) << rule;
  }
}

// A route that led to the label's old place is given up: each leader goes straight from its part to the label.
TEST(ScriptTest, LeadersOfAlignedLabelsGoStraight) {
  const fixtures::ScratchFolder folder;
  std::ofstream(folder.Path() / "s.zrf") << kGenerate << "align axis-y 1 2 3 4 5 6 7 8\nwrite f.svg\n";
  const ProgramResult result = fixtures::RunProgram({"run", "s.zrf"}, folder.Path());
  ASSERT_EQ(result.exitCode, 0) << result.errors;
  const std::string svg = fixtures::ReadFile(folder.Path() / "f.svg");
  for (const char* leader : {"leader-1-1", "leader-2-1", "leader-5-1", "leader-8-1"}) {
    const auto path = svg.find(" d=\"", svg.find(leader));
    ASSERT_NE(path, std::string::npos) << leader;
    const std::string d = svg.substr(path, svg.find("/>", path) - path);
    EXPECT_EQ(std::count(d.begin(), d.end(), 'L'), 1) << leader << d;
  }
}

}  // namespace
}  // namespace zrfigure
