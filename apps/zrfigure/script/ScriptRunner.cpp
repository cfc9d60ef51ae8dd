#include "script/ScriptRunner.h"

#include <filesystem>
#include <fstream>
#include <iostream>

#include <du/TaskPool.h>
#include <zrk/World.h>

#include "commands/FigureCommand.h"
#include "script/ChangeReport.h"
#include "script/CommandTable.h"
#include "script/CommandWords.h"

namespace zrfigure {
namespace {

constexpr const char* kUsage = "usage: zrfigure run [--json] SCRIPT";

nlohmann::ordered_json ChangesToJson(const CalloutChanges& changes) {
  return {{"added", changes.added},
          {"removed", changes.removed},
          {"labelsChanged", changes.relabelled},
          {"labelsMoved", changes.labelsMoved},
          {"leadersAdded", changes.leadersAdded},
          {"leadersRemoved", changes.leadersRemoved},
          {"leadersMoved", changes.leadersMoved},
          {"leadersShown", changes.leadersShown},
          {"leadersHidden", changes.leadersHidden}};
}

int Fail(const std::string& message) {
  std::cerr << message << std::endl;
  return kExitBadInput;
}

int RunFile(const std::string& path, bool json) {
  std::ifstream file(path);
  if (std::filesystem::is_directory(path) || !file) return Fail("zrfigure: cannot read '" + path + "'");
  ScriptRunner runner(std::cout, json);
  std::string line;
  std::string error;
  for (std::size_t number = 1; std::getline(file, line); ++number) {
    if (runner.RunLine(line, number, true, error)) continue;
    std::cout.flush();
    return Fail(path + ":" + std::to_string(number) + ": " + error);
  }
  return kExitDone;
}

}  // namespace

std::vector<CalloutState> ScriptRunner::Callouts() const {
  return workspace_.IsOpen() ? workspace_.Session().GetCallouts() : std::vector<CalloutState>();
}

void ScriptRunner::Print(const std::string& line, std::size_t number, bool echo, const Answer& answer,
                         const std::vector<CalloutState>& before) {
  const CalloutChanges changes = CompareCallouts(before, Callouts());
  if (!json_) {
    if (echo) output_ << "> " << line << "\n";
    output_ << answer.text << DescribeChanges(changes) << std::endl;
    return;
  }
  nlohmann::ordered_json object{{"line", number}, {"command", SplitWords(line)}};
  if (!answer.data.is_null()) object["answer"] = answer.data;
  object["changes"] = ChangesToJson(changes);
  object["message"] = DescribeChanges(changes);
  output_ << object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
}

bool ScriptRunner::RunLine(const std::string& line, std::size_t number, bool echo, std::string& error) {
  try {
    const Words words = SplitWords(line);
    if (words.empty()) return true;
    const Command& command = FindCommand(words);
    const std::vector<CalloutState> before = Callouts();
    const Answer answer = command.handler(workspace_, words);
    if (workspace_.IsOpen()) zrk::World::GetWorld()->GetTaskPool()->WaitIdle();
    Print(line, number, echo, answer, before);
    return true;
  } catch (const CommandError& failure) {
    error = failure.message;
    return false;
  }
}

int RunScriptCommand(const std::vector<std::string>& arguments) {
  bool json = false;
  std::string script;
  for (const std::string& argument : arguments) {
    if (argument == "--json") {
      json = true;
    } else if (argument == "--help" || argument == "-h") {
      std::cout << kUsage << "\nOne command a line; # begins a comment.\n\n" << CommandSummary();
      return kExitDone;
    } else if (argument.empty() || argument[0] == '-' || !script.empty()) {
      return Fail("zrfigure: run: '" + argument + "' is not understood; " + kUsage);
    } else {
      script = argument;
    }
  }
  if (script.empty()) return Fail(std::string("zrfigure: run: no script given; ") + kUsage);
  return RunFile(script, json);
}

}  // namespace zrfigure
