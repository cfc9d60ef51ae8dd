#pragma once
// `zrfigure check`: looks over a figure that was written, or the one that a model would give.

#include "commands/Options.h"

namespace zrfigure {

/// Prints the findings. Further pages of a figure, `<stem>-2.svg` and so on, belong to it when they stand beside it. A
/// model is drawn with the options, and nothing is written. \return kExitDone without a finding, kExitFindings with
/// one, kExitBadInput with one line on standard error when there is nothing to look over. [host-thread]
int RunCheckCommand(const Options& options);

}  // namespace zrfigure
