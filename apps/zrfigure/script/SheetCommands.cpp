// Commands about notes on the page of the figure.

#include <zrk/Operation.h>

#include "script/CommandTable.h"
#include "script/CommandWords.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

Answer AddNote(Workspace& workspace, const Words& words) {
  Document& document = workspace.Current();
  const Point2 at{NumberOf(words[2], "x"), NumberOf(words[3], "y")};
  const unsigned item = words.size() > 4 ? workspace.FindItem(words[4]) : 0;
  const Page& page = document.GetPage();
  if (at.x < 0 || at.y < 0 || at.x > page.widthMm || at.y > page.heightMm) {
    throw CommandError{"the place " + words[2] + " " + words[3] + " is not on the page"};
  }
  if (words[1].empty()) throw CommandError{"a note needs a text"};
  workspace.Edit(words[0], "the note cannot be made",
                 [&](const auto& operation) { return document.GetSheet().AddNote(words[1], at, item, operation); });
  const NoteState note = document.GetSheet().Notes().back();
  return {"note " + std::to_string(note.number) + ": " + note.text + "\n",
          {{"note", note.number}, {"text", note.text}, {"item", note.item}}};
}

Answer UpdateNotes(Workspace& workspace, const Words& /*words*/) {
  const std::size_t changed = workspace.Current().GetSheet().Update();
  Answer answer{std::to_string(changed) + (changed == 1 ? " note changed\n" : " notes changed\n"), {}};
  answer.data = nlohmann::ordered_json::array();
  for (const NoteState& note : workspace.Current().GetSheet().Notes()) {
    answer.data.push_back({{"note", note.number}, {"text", note.text}, {"item", note.item}});
  }
  return answer;
}

}  // namespace

std::vector<Command> SheetCommands() {
  return {
      {"note", "TEXT X Y [ITEM]",
       "Write on the page, in millimetres from its upper left corner; {item}, {quantity} and {tag} show ITEM's values",
       3, 4, AddNote},
      {"update-2d", "", "Bring the notes up to date with the item list", 0, 0, UpdateNotes},
  };
}

}  // namespace zrfigure
