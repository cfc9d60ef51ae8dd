#include "script/CommandTable.h"

#include "script/TextTable.h"

namespace zrfigure {
namespace {

std::vector<Command> CollectCommands() {
  std::vector<Command> all;
  for (const auto& group : {DocumentCommands(), PartCommands(), AnnotationCommands(), ItemCommands(), CalloutCommands(),
                            SheetCommands(), ViewCommands(), HistoryCommands()}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  return all;
}

std::string UsageOf(const Command& command) {
  return std::string(command.name) + (*command.usage == '\0' ? "" : " ") + command.usage;
}

}  // namespace

const std::vector<Command>& AllCommands() {
  static const std::vector<Command> all = CollectCommands();
  return all;
}

std::string CommandSummary(const std::vector<Command>& commands) {
  TextTable table({"command", "what it does"});
  for (const Command& command : commands) table.Add({UsageOf(command), command.summary});
  return table.Text();
}

const Command& CommandNamed(const std::string& name) {
  for (const Command& command : AllCommands()) {
    if (name == command.name) return command;
  }
  throw CommandError{"'" + name + "' is no command; help lists them"};
}

const Command& FindCommand(const Words& words) {
  const Command& command = CommandNamed(words.front());
  const std::size_t arguments = words.size() - 1;
  if (arguments >= command.minimum && arguments <= command.maximum) return command;
  throw CommandError{(arguments < command.minimum ? "too few arguments: " : "too many arguments: ") + UsageOf(command)};
}

}  // namespace zrfigure
