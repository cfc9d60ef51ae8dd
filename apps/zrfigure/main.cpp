// The zrfigure program: reads the command line and runs the command.

#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "commands/CheckCommand.h"
#include "commands/FigureCommand.h"
#include "commands/Options.h"
#include "script/ScriptRunner.h"
#include "script/Shell.h"

int main(int argc, char** argv) {
  try {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    if (!arguments.empty() && arguments.front() == "run") {
      arguments.erase(arguments.begin());
      return zrfigure::RunScriptCommand(arguments);
    }
    if (!arguments.empty() && arguments.front() == "shell") {
      arguments.erase(arguments.begin());
      return zrfigure::RunShellCommand(arguments);
    }
    const zrfigure::ParsedOptions parsed = zrfigure::ParseOptions(arguments);
    std::fputs(parsed.output.c_str(), stdout);
    if (parsed.options) {
      return parsed.options->check ? zrfigure::RunCheckCommand(*parsed.options)
                                   : zrfigure::RunFigureCommand(*parsed.options);
    }
    if (parsed.error.empty()) return zrfigure::kExitDone;
    std::fprintf(stderr, "zrfigure: %s\n", parsed.error.c_str());
  } catch (const std::bad_alloc&) {
    std::fputs("zrfigure: stopped: there is not enough memory\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "zrfigure: stopped: %s\n", error.what());
  }
  return zrfigure::kExitBadInput;
}
