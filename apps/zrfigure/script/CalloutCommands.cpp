// Commands about callouts. Callouts are named by their ids.

#include <cmath>
#include <cstdio>

#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/Illustration3dView.h>

#include "commands/AlignModes.h"
#include "script/ChangeReport.h"
#include "script/CommandTable.h"
#include "script/CommandWords.h"
#include "script/TextTable.h"
#include "script/Workspace.h"
#include "zrcallouts/Align.h"
#include "zrcallouts/Callouts.h"

namespace zrfigure {
namespace {

using zrannotations::AnnotationEdit;
using zrcallouts::Align_Mode;

std::string Coordinates(const Vec3& at) {
  char text[96];
  std::snprintf(text, sizeof text, "%.1f %.1f %.1f", at.x + 0.0, at.y + 0.0, at.z + 0.0);
  return text;
}

Answer ListCallouts(Workspace& workspace, const Words& /*words*/) {
  const OccurrenceTree& tree = workspace.Current().Tree();
  TextTable table({"id", "item", "text", "anchored on", "leaders shown", "label position"});
  Answer answer;
  answer.data = nlohmann::ordered_json::array();
  for (const CalloutState& callout : workspace.Session().GetCallouts()) {
    std::size_t shown = 0;
    std::string names;
    std::vector<std::string> paths;
    for (const LeaderState& leader : callout.leaders) {
      shown += IsShown(leader) ? 1 : 0;
      paths.push_back(leader.occurrence < 0 ? "" : tree.InstancePath(leader.occurrence));
      names += (names.empty() ? "" : ", ") +
               (leader.occurrence < 0 ? "-" : tree.GetModel().occurrences[leader.occurrence].name);
    }
    const std::string of = std::to_string(shown) + " of " + std::to_string(callout.leaders.size());
    table.Add({std::to_string(callout.id), callout.item == 0 ? "-" : std::to_string(callout.item), callout.text, names,
               of, Coordinates(callout.label)});
    answer.data.push_back({{"id", callout.id},
                           {"item", callout.item},
                           {"text", callout.text},
                           {"anchoredOn", paths},
                           {"leadersShown", shown},
                           {"label", {callout.label.x, callout.label.y, callout.label.z}}});
  }
  answer.text = table.Text();
  return answer;
}

Answer DeleteCallout(Workspace& workspace, const Words& words) {
  const auto callout = workspace.FindCallout(words[1]);
  workspace.Edit(words[0], "callout " + words[1] + " cannot be deleted", [&](const auto& operation) {
    return AnnotationEdit::DeleteCallout(workspace.Session().GetScene(), callout, operation);
  });
  return {};
}

Answer JoinCallouts(Workspace& workspace, const Words& words) {
  const auto callouts = workspace.FindCallouts(words, 1);
  workspace.Edit(
      words[0], "only single callouts with a template can be joined, two or more of them", [&](const auto& operation) {
        return static_cast<bool>(AnnotationEdit::JoinCallouts(workspace.Session().GetScene(), callouts, operation));
      });
  return {};
}

/// The options and callouts of an alignment.
struct AlignRequest {
  Align_Mode mode = Align_Mode::MinX;
  bool distribute = false;
  std::vector<dg::DPoint3D> line;  ///< Two points, of mode "line" only.
  std::size_t firstCallout = 0;    ///< Word where the callouts begin.
};

dg::DPoint3D PointOf(const std::string& word) {
  std::vector<std::string> parts{""};
  for (const char c : word) {
    if (c == ',') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  if (parts.size() != 3) throw CommandError{"point '" + word + "' is not of the form x,y,z"};
  return {NumberOf(parts[0], "x"), NumberOf(parts[1], "y"), NumberOf(parts[2], "z")};
}

Align_Mode AlignModeOf(const std::string& word) {
  if (word == "line") return Align_Mode::AlongLine;
  if (const auto mode = FindAlignMode(word)) return *mode;
  throw CommandError{"mode '" + word + "' is unknown: use one of " + AlignModeNames() + ", line"};
}

AlignRequest ReadAlignRequest(const Words& words) {
  AlignRequest request;
  request.mode = AlignModeOf(words[1]);
  std::size_t at = 2;
  for (; at < words.size() && words[at].starts_with("--"); ++at) {
    if (words[at] == "--distribute") {
      request.distribute = true;
    } else if (words[at] == "--line" && request.line.empty()) {
      if (words.size() < at + 3) throw CommandError{"--line needs two points"};
      request.line = {PointOf(words[at + 1]), PointOf(words[at + 2])};
      at += 2;
    } else {
      throw CommandError{"option '" + words[at] + "' is unknown or stands here twice"};
    }
  }
  if ((request.mode == Align_Mode::AlongLine) == request.line.empty()) {
    throw CommandError{"mode line needs --line, and no other mode takes it"};
  }
  request.firstCallout = at;
  return request;
}

bool HasDirection(const std::vector<dg::DPoint3D>& line, const View& view) {
  constexpr double kLeastPx = 0.5;
  const Vec3 from = view.ToPixel({line[0].x, line[0].y, line[0].z});
  const Vec3 to = view.ToPixel({line[1].x, line[1].y, line[1].z});
  return std::hypot(to.x - from.x, to.y - from.y) > kLeastPx;
}

// The alignment records its operation itself; when it refuses it has moved nothing.
Answer AlignLabels(Workspace& workspace, const Words& words) {
  const HostSession& session = workspace.Session();
  const AlignRequest request = ReadAlignRequest(words);
  const auto callouts = workspace.FindCallouts(words, request.firstCallout);
  if (callouts.size() < 2) throw CommandError{"align needs two callouts or more"};
  if (!zrcallouts::Align::IsAxisAvailable(session.GetView(), request.mode)) {
    throw CommandError{"the axis points at the viewer: there is no line to align along"};
  }
  if (!request.line.empty() && !HasDirection(request.line, workspace.Current().GetView())) {
    throw CommandError{"the line has no direction on screen"};
  }
  zrcallouts::Align::Annotations annotations(callouts.begin(), callouts.end());
  const auto operation = zrk::MakeObject<zrk::Operation>(words[0], session.GetScene(), true);
  const du::SmartPtr<zrcallouts::Align> align(
      new zrcallouts::Align(annotations, request.mode, request.distribute, session.GetView(), operation));
  if (align->Execute(request.line)) return {};
  throw CommandError{"these labels cannot be aligned"};
}

Answer ArrangeLabels(Workspace& workspace, const Words& words) {
  const auto callouts = workspace.FindCallouts(words.size() > 1 ? words : Words{words[0], "all"}, 1);
  workspace.Edit(words[0], "there is no label to arrange",
                 [&](const auto& operation) { return workspace.Current().Arrange(callouts, operation); });
  return {};
}

Answer SortCallouts(Workspace& workspace, const Words& words) {
  auto callouts = workspace.FindCallouts(words.size() > 1 ? words : Words{words[0], "all"}, 1);
  workspace.Session().GetEngine()->Sort(callouts);
  Answer answer;
  answer.data = nlohmann::ordered_json::array();
  for (const auto& callout : callouts) {
    answer.text += (answer.text.empty() ? "" : " ") + std::to_string(callout->Id());
    answer.data.push_back(callout->Id());
  }
  if (!answer.text.empty()) answer.text += "\n";
  return answer;
}

Answer ShowFonts(Workspace& workspace, const Words& words) {
  const bool customOnly = words.size() > 1;
  if (customOnly && words[1] != "custom") throw CommandError{"'" + words[1] + "' is not understood: use custom"};
  Answer answer;
  answer.data = nlohmann::ordered_json::array();
  for (const std::string& font : workspace.Session().GetEngine()->GetCalloutsAndInsetsFonts(customOnly)) {
    if (font.empty()) continue;
    answer.text += font + "\n";
    answer.data.push_back(font);
  }
  return answer;
}

}  // namespace

std::vector<Command> CalloutCommands() {
  return {
      {"callouts", "", "Show the callouts", 0, 0, ListCallouts},
      {"delete-callout", "CALLOUT", "Delete a callout", 1, 1, DeleteCallout},
      {"join", "CALLOUT CALLOUT...", "Make one combined callout of several", 2, kAnyNumber, JoinCallouts},
      {"align", "MODE [--distribute] [--line X,Y,Z X,Y,Z] all|CALLOUT...",
       "Line up labels, evenly spaced with --distribute; mode line takes two points", 2, kAnyNumber, AlignLabels},
      {"arrange", "[all|CALLOUT...]", "Place labels anew for the present view, round all others", 0, kAnyNumber,
       ArrangeLabels},
      {"fonts", "[custom]", "Show the fonts of callouts and insets, or of customised ones", 0, 1, ShowFonts},
      {"sort", "[all|CALLOUT...]", "Show the ids of callouts in the order of their items", 0, kAnyNumber, SortCallouts},
  };
}

}  // namespace zrfigure
