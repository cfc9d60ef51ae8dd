#include "script/Shell.h"

#include <functional>
#include <iostream>
#include <memory>
#include <optional>

#include <unistd.h>

#include "commands/FigureCommand.h"
#include "script/CommandTable.h"
#include "script/Completion.h"
#include "script/LineEditor.h"
#include "script/ScriptRunner.h"

namespace zrfigure {
namespace {

constexpr const char* kUsage = "usage: zrfigure shell [--json] [--no-history]";

struct ShellOptions {
  bool json = false;
  bool history = true;
};

void RunLoop(ScriptRunner& runner, const std::function<std::optional<std::string>()>& nextLine,
             const std::string& source) {
  std::string error;
  for (std::size_t number = 1; !runner.GetWorkspace().Quits(); ++number) {
    const std::optional<std::string> line = nextLine();
    if (!line) return;
    if (runner.RunLine(*line, number, false, error)) continue;
    std::cerr << (source.empty() ? "" : source + ":" + std::to_string(number) + ": ") << error << std::endl;
  }
}

void RunAtTerminal(ScriptRunner& runner, bool history) {
  LineEditor editor("zrfigure> ", history ? HistoryFile() : std::filesystem::path(),
                    [&](std::string_view line) { return CompleteLine(line, runner.GetWorkspace()); });
  std::cout << "help lists the commands; Tab completes; quit or Ctrl-D ends." << std::endl;
  RunLoop(
      runner, [&] { return editor.ReadLine(); }, "");
  if (!runner.GetWorkspace().Quits()) std::cout << std::endl;
}

void RunFromPipe(ScriptRunner& runner) {
  const auto nextLine = []() -> std::optional<std::string> {
    std::string line;
    if (!std::getline(std::cin, line)) return std::nullopt;
    return line;
  };
  RunLoop(runner, nextLine, "stdin");
}

}  // namespace

int RunShellCommand(const std::vector<std::string>& arguments) {
  ShellOptions options;
  for (const std::string& argument : arguments) {
    if (argument == "--json") {
      options.json = true;
    } else if (argument == "--no-history") {
      options.history = false;
    } else if (argument == "--help" || argument == "-h") {
      std::cout << kUsage << "\n\n" << CommandSummary(AllCommands());
      return kExitDone;
    } else {
      std::cerr << "zrfigure: shell: '" << argument << "' is not understood; " << kUsage << std::endl;
      return kExitBadInput;
    }
  }
  ScriptRunner runner(std::cout, options.json);
  if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1) {
    RunAtTerminal(runner, options.history);
  } else {
    RunFromPipe(runner);
  }
  return kExitDone;
}

}  // namespace zrfigure
