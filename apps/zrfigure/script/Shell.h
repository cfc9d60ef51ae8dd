#pragma once
// `zrfigure shell`: commands typed one after the other.

#include <string>
#include <vector>

namespace zrfigure {

/// Runs `shell` with the arguments behind it: [--json] [--no-history]. At a terminal lines are edited, remembered and
/// completed; otherwise standard input is read line by line. A wrong command prints its message to standard error and
/// changes nothing; the shell goes on. \return the exit code: 0, or 2 for wrong arguments. [host-thread]
int RunShellCommand(const std::vector<std::string>& arguments);

}  // namespace zrfigure
