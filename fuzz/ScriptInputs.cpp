#include "ScriptInputs.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>

#include "apps/commands/SmallAssembly.h"
#include "script/Command.h"
#include "script/CommandWords.h"
#include "script/ScriptRunner.h"

namespace zrfuzz {

namespace {

constexpr std::size_t kMostLines = 40;

std::unique_ptr<zrfigure::ScriptRunner> runnerOfProcess;

/// One for the process, with a new model: it starts another process and the host, which costs more than a script.
zrfigure::ScriptRunner& RunnerWithModel() {
  static std::ostringstream output;
  if (!runnerOfProcess) runnerOfProcess = std::make_unique<zrfigure::ScriptRunner>(output, false);
  output.str({});
  std::string error;
  runnerOfProcess->GetWorkspace().Open(zrfigure::fixtures::MakePress(), *zrfigure::ParseViewDirection("iso", error));
  // The host's statics came with the first model; the runner has to go before they do.
  [[maybe_unused]] static const int registered = std::atexit([] { runnerOfProcess.reset(); });
  return *runnerOfProcess;
}

bool TouchesFiles(const std::string& line) {
  constexpr std::array<std::string_view, 4> kFileCommands = {"open", "write", "template", "replace-template"};
  try {
    const auto words = zrfigure::SplitWords(line);
    if (words.empty() || std::count(kFileCommands.begin(), kFileCommands.end(), words[0]) == 0) return false;
    return words.size() > 1 && words[1].find_first_of("./") != std::string::npos;
  } catch (const zrfigure::CommandError&) {
    return false;
  }
}

std::optional<std::string> RunLine(zrfigure::ScriptRunner& runner, const std::string& line, std::size_t number) {
  zrfigure::Document& document = runner.GetWorkspace().Current();
  const std::string before = document.Dump();
  std::string error;
  if (runner.RunLine(line, number, true, error)) return std::nullopt;
  const bool oneLine = !error.empty() && error.find('\n') == std::string::npos;
  if (!oneLine || error.rfind("stopped", 0) == 0) return "'" + line + "' is refused with '" + error + "'";
  if (document.Dump() != before) return "'" + line + "' is refused and changes something";
  return std::nullopt;
}

}  // namespace

std::optional<std::string> RunScriptInput(std::span<const std::uint8_t> script) {
  zrfigure::ScriptRunner& runner = RunnerWithModel();
  std::istringstream lines(std::string(script.begin(), script.end()));
  std::string line;
  for (std::size_t number = 1; number <= kMostLines && std::getline(lines, line); ++number) {
    if (TouchesFiles(line)) continue;
    if (auto broken = RunLine(runner, line, number)) return broken;
  }
  zrfigure::Document& document = runner.GetWorkspace().Current();
  while (document.Redo()) {
  }
  const std::string end = document.Dump();
  std::size_t undone = 0;
  while (document.Undo()) ++undone;
  const std::string begin = document.Dump();
  while (document.Redo()) --undone;
  if (undone != 0) return std::string("not as much is redone as was undone");
  const std::string endAgain = document.Dump();
  while (document.Undo()) {
  }
  if (endAgain != end) return "redone another state:\n" + end + "\n---\n" + endAgain;
  return document.Dump() == begin ? std::nullopt : std::optional<std::string>("undone another state");
}

}  // namespace zrfuzz
