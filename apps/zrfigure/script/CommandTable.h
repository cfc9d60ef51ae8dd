#pragma once
// All commands of scripts and of the shell.

#include <string>
#include <vector>

#include "script/Command.h"

namespace zrfigure {

[[nodiscard]] std::vector<Command> DocumentCommands();
[[nodiscard]] std::vector<Command> PartCommands();
[[nodiscard]] std::vector<Command> AnnotationCommands();
[[nodiscard]] std::vector<Command> ItemCommands();
[[nodiscard]] std::vector<Command> CalloutCommands();
[[nodiscard]] std::vector<Command> SheetCommands();
[[nodiscard]] std::vector<Command> ViewCommands();
[[nodiscard]] std::vector<Command> HistoryCommands();

/// Every command, group by group.
[[nodiscard]] const std::vector<Command>& AllCommands();

/// The command of that name, with a fitting number of arguments. \throws CommandError otherwise.
[[nodiscard]] const Command& FindCommand(const Words& words);

/// The command of that name. \throws CommandError when there is none.
[[nodiscard]] const Command& CommandNamed(const std::string& name);

/// A line a command: usage and summary.
[[nodiscard]] std::string CommandSummary(const std::vector<Command>& commands);

}  // namespace zrfigure
