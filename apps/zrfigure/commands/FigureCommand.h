#pragma once
// `zrfigure MODEL`: from a CAD file to a figure and its parts list.

#include "commands/Options.h"

namespace zrfigure {

/// Exit codes of the program.
constexpr int kExitDone = 0;
constexpr int kExitFindings = 1;  ///< Only with --strict.
constexpr int kExitBadInput = 2;

/// Runs the whole chain. Outputs appear together at the end or not at all; whatever fails is one line on standard
/// error. Starts the import's child process first, so no other thread may run yet. \return the exit code. [host-thread]
int RunFigureCommand(const Options& options);

}  // namespace zrfigure
