// Undo and redo, and what leaves the program.

#include "script/CommandTable.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

Answer Undo(Workspace& workspace, const Words& /*words*/) {
  if (!workspace.Current().Undo()) throw CommandError{"there is nothing to undo"};
  return {};
}

Answer Redo(Workspace& workspace, const Words& /*words*/) {
  if (!workspace.Current().Redo()) throw CommandError{"there is nothing to redo"};
  return {};
}

Answer Dump(Workspace& workspace, const Words& /*words*/) {
  const std::string dump = workspace.Current().Dump();
  return {dump, dump};
}

Answer Write(Workspace& workspace, const Words& words) {
  Answer answer;
  answer.data = nlohmann::ordered_json::array();
  for (const std::string& path : workspace.Current().Write(words[1])) {
    answer.text += path + " written\n";
    answer.data.push_back(path);
  }
  return answer;
}

Answer Help(Workspace& /*workspace*/, const Words& words) {
  std::vector<Command> commands = AllCommands();
  if (words.size() > 1) commands = {CommandNamed(words[1])};
  Answer answer{CommandSummary(commands), nlohmann::ordered_json::array()};
  for (const Command& command : commands) {
    answer.data.push_back({{"command", command.name}, {"usage", command.usage}, {"summary", command.summary}});
  }
  return answer;
}

Answer Quit(Workspace& workspace, const Words& /*words*/) {
  workspace.Quit();
  return {};
}

}  // namespace

std::vector<Command> HistoryCommands() {
  return {
      {"undo", "", "Take the last change back", 0, 0, Undo},
      {"redo", "", "Make the change that was taken back again", 0, 0, Redo},
      {"dump", "", "Show everything that undo restores", 0, 0, Dump},
      {"write", "FILE", "Write the figure (.svg .pdf .png .html) or the parts list (.csv .json)", 1, 1, Write},
      {"help", "[COMMAND]", "Show the commands, or one of them", 0, 1, Help},
      {"quit", "", "End the shell, or the script before its last line", 0, 0, Quit},
  };
}

}  // namespace zrfigure
