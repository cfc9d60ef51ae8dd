#include <fstream>
#include <utility>

#include <gtest/gtest.h>

#include "ProgramRunner.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;
using fixtures::ProgramResult;

const fs::path kExamples = fs::path(ZR_SOURCE_DIR) / "examples";
const std::string kGenerate = "open " + (kExamples / "drive-unit.step").string() + "\nsettings combine\ngenerate\n";

ProgramResult RunScript(const std::string& script) {
  const fixtures::ScratchFolder folder;
  std::ofstream(folder.Path() / "s.zrf") << script;
  return fixtures::RunProgram({"run", "s.zrf"}, folder.Path());
}

/// What each command called `word` printed, without the command itself.
std::vector<std::string> AnswersOf(const std::string& output, const std::string& word) {
  std::vector<std::string> answers;
  const std::string mark = "> " + word;
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

TEST(ScriptTest, CalloutsReactToEdits) {
  const std::pair<const char*, const char*> cases[] = {
      {"move 'Motor housing 1' 0 0 80", "1 label moved, 1 leader moved\n"},
      {"hide 'Terminal box 1'", "1 leader hidden\n"},
      {"remove-item 9", "callout 9 removed\n"},
      {"template number-quantity\nreplace-template number-quantity\nset-quantity 8 3", "no callout changed\n"},
      {"replace-template number-quantity\nset-quantity 8 3", "1 label changed\n"},
      {"remove 'Coupling hub 2'", "1 leader removed\n"},
      {"clear-items", "18 callouts removed\n"},
  };
  for (const auto& [edit, change] : cases) {
    const ProgramResult result = RunScript(kGenerate + "dump\n" + edit + "\ndump\nundo\ndump\nredo\ndump\n");
    ASSERT_EQ(result.exitCode, 0) << edit << ": " << result.errors;
    const std::string last = std::string(edit).substr(std::string(edit).rfind('\n') + 1);
    EXPECT_EQ(AnswersOf(result.output, last), std::vector<std::string>{change}) << edit;
    const auto dumps = AnswersOf(result.output, "dump");
    ASSERT_EQ(dumps.size(), 4u);
    EXPECT_NE(dumps[0], dumps[1]) << edit;
    EXPECT_EQ(dumps[1], dumps[3]) << edit;
    if (last == edit) {
      EXPECT_EQ(dumps[0], dumps[2]) << edit;
    }
  }
}

TEST(ScriptTest, WrongCommandsAreToldWithFileAndLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"frobnicate", "'frobnicate' is no command; help lists them"},
      {"move 'Motor housing 1' 0 0", "too few arguments: move PART DX DY DZ"},
      {"undo 2", "too many arguments: undo"},
      {"move 'Motor housing 1' 0 x 0", "dy 'x' is not a number"},
      {"hide Unicorn", "there is no part 'Unicorn'"},
      {"show 'Terminal box 1'", "'Terminal box 1' is shown already"},
      {"remove-item 99", "there is no item '99'"},
      {"set-quantity 1 -2", "quantity '-2' is not a whole number of 0 or more"},
      {"delete-callout 99", "there is no callout 99"},
      {"language xx", "language 'xx' is unknown: use en, de, fr or ja"},
      {"hide 'Terminal", "the quote ' has no end"},
      {"open other.step", "a model is open already"},
      {"redo", "there is nothing to redo"},
  };
  for (const auto& [line, message] : cases) {
    const ProgramResult result = RunScript(kGenerate + "# next\n" + line + "\nundo\n");
    EXPECT_EQ(result.exitCode, 2) << line;
    EXPECT_EQ(result.errors, "s.zrf:5: " + std::string(message) + "\n");
    EXPECT_EQ(result.output.find("> undo"), std::string::npos) << line;
  }
  EXPECT_EQ(RunScript("generate\n").errors, "s.zrf:1: no model is open: begin with open MODEL\n");
}

}  // namespace
}  // namespace zrfigure
