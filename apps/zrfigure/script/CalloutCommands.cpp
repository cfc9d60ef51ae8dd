// Commands about callouts. Callouts are named by their ids.

#include <array>
#include <cstdio>
#include <utility>

#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/Illustration3dView.h>

#include "script/ChangeReport.h"
#include "script/CommandTable.h"
#include "script/TextTable.h"
#include "script/Workspace.h"
#include "zrcallouts/Align.h"
#include "zrcallouts/Callouts.h"

namespace zrfigure {
namespace {

using zrannotations::AnnotationEdit;
using zrcallouts::Align_Mode;

constexpr std::array<std::pair<const char*, Align_Mode>, 11> kAlignModes{{
    {"min-x", Align_Mode::MinX},
    {"center-x", Align_Mode::CenterX},
    {"max-x", Align_Mode::MaxX},
    {"min-y", Align_Mode::MinY},
    {"center-y", Align_Mode::CenterY},
    {"max-y", Align_Mode::MaxY},
    {"spread-x", Align_Mode::SpreadX},
    {"spread-y", Align_Mode::SpreadY},
    {"axis-x", Align_Mode::AlongAxisX},
    {"axis-y", Align_Mode::AlongAxisY},
    {"axis-z", Align_Mode::AlongAxisZ},
}};

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

Align_Mode AlignModeOf(const std::string& word) {
  std::string known;
  for (const auto& [name, mode] : kAlignModes) {
    if (word == name) return mode;
    known += (known.empty() ? "" : ", ") + std::string(name);
  }
  throw CommandError{"mode '" + word + "' is unknown: use one of " + known};
}

// The alignment records its operation itself.
Answer AlignLabels(Workspace& workspace, const Words& words) {
  const HostSession& session = workspace.Session();
  const Align_Mode mode = AlignModeOf(words[1]);
  const bool distribute = words[2] == "--distribute";
  const auto callouts = workspace.FindCallouts(words, distribute ? 3 : 2);
  if (callouts.size() < 2) throw CommandError{"align needs two callouts or more"};
  if (!zrcallouts::Align::IsAxisAvailable(session.GetView(), mode)) {
    throw CommandError{"the axis points at the viewer: there is no line to align along"};
  }
  zrcallouts::Align::Annotations annotations(callouts.begin(), callouts.end());
  const auto operation = zrk::MakeObject<zrk::Operation>(words[0], session.GetScene(), true);
  const du::SmartPtr<zrcallouts::Align> align(
      new zrcallouts::Align(annotations, mode, distribute, session.GetView(), operation));
  if (!align->Execute({})) throw CommandError{"these labels cannot be aligned"};
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

}  // namespace

std::vector<Command> CalloutCommands() {
  return {
      {"callouts", "", "Show the callouts", 0, 0, ListCallouts},
      {"delete-callout", "CALLOUT", "Delete a callout", 1, 1, DeleteCallout},
      {"join", "CALLOUT CALLOUT...", "Make one combined callout of several", 2, kAnyNumber, JoinCallouts},
      {"align", "MODE [--distribute] all|CALLOUT...", "Line up labels, evenly spaced with --distribute", 2, kAnyNumber,
       AlignLabels},
      {"sort", "[all|CALLOUT...]", "Show the ids of callouts in the order of their items", 0, kAnyNumber, SortCallouts},
  };
}

}  // namespace zrfigure
