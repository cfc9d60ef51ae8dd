// Undo and redo, and what leaves the program.

#include "script/CommandTable.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

Answer Undo(Workspace& workspace, const Words& /*words*/) {
  if (!workspace.Session().Undo()) throw CommandError{"there is nothing to undo"};
  return {};
}

Answer Redo(Workspace& workspace, const Words& /*words*/) {
  if (!workspace.Session().Redo()) throw CommandError{"there is nothing to redo"};
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

Answer Help(Workspace& /*workspace*/, const Words& /*words*/) {
  return {CommandSummary(), {}};
}

}  // namespace

std::vector<Command> HistoryCommands() {
  return {
      {"undo", "", "Take the last change back", 0, 0, Undo},
      {"redo", "", "Make the change that was taken back again", 0, 0, Redo},
      {"dump", "", "Show everything that undo restores", 0, 0, Dump},
      {"write", "FILE", "Write the figure (.svg .pdf .png) or the parts list (.csv .json)", 1, 1, Write},
      {"help", "", "Show the commands", 0, 0, Help},
  };
}

}  // namespace zrfigure
