#pragma once
// Runs the zrfigure program that was built beside the test program.

#include <filesystem>
#include <string>
#include <vector>

#include "apps/import/TemporaryFolder.h"

namespace zrfigure::fixtures {

struct ProgramResult {
  int exitCode = -1;  ///< -1 when it was ended by a signal.
  std::string output;
  std::string errors;
};

/// Nought is no limit. Past its time the program is ended by a signal.
struct ProgramLimits {
  unsigned seconds = 0;
  std::size_t addressSpaceBytes = 0;
};

/// Runs `zrfigure ARGUMENTS` in a folder, with a file as its standard input, and waits for it.
ProgramResult RunProgram(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                         const std::filesystem::path& input = "/dev/null", ProgramLimits limits = {});

}  // namespace zrfigure::fixtures
