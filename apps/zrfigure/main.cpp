// The zrfigure program: reads the command line and runs the command.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "commands/FigureCommand.h"
#include "commands/Options.h"

int main(int argc, char** argv) {
  try {
    const zrfigure::ParsedOptions parsed = zrfigure::ParseOptions(std::vector<std::string>(argv + 1, argv + argc));
    std::fputs(parsed.output.c_str(), stdout);
    if (parsed.options) return zrfigure::RunFigureCommand(*parsed.options);
    if (parsed.error.empty()) return zrfigure::kExitDone;
    std::fprintf(stderr, "zrfigure: %s\n", parsed.error.c_str());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "zrfigure: stopped: %s\n", error.what());
  }
  return zrfigure::kExitBadInput;
}
