#include "script/ScriptRunner.h"

#include <filesystem>
#include <fstream>
#include <iostream>

#include <du/TaskPool.h>
#include <zrannotations/Callout.h>
#include <zrk/AnnoSet.h>
#include <zrk/World.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/Illustration3dView.h>

#include "commands/FigureCommand.h"
#include "script/ChangeReport.h"
#include "script/CommandTable.h"
#include "script/CommandWords.h"

namespace zrfigure {
namespace {

constexpr const char* kUsage = "usage: zrfigure run [--json] SCRIPT|-";

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

std::string Text(const nlohmann::ordered_json& object) {
  return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

int Fail(const std::string& message) {
  std::cerr << message << std::endl;
  return kExitBadInput;
}

int RunStream(std::istream& stream, const std::string& name, bool json) {
  ScriptRunner runner(std::cout, json);
  std::string line;
  std::string error;
  for (std::size_t number = 1; !runner.GetWorkspace().Quits() && std::getline(stream, line); ++number) {
    if (runner.RunLine(line, number, true, error)) continue;
    std::cout.flush();
    return Fail(name + ":" + std::to_string(number) + ": " + error);
  }
  return kExitDone;
}

int RunFile(const std::string& path, bool json) {
  if (path == "-") return RunStream(std::cin, "stdin", json);
  std::ifstream file(path);
  if (std::filesystem::is_directory(path) || !file) return Fail("zrfigure: cannot read '" + path + "'");
  return RunStream(file, path, json);
}

}  // namespace

ScriptRunner::Moment ScriptRunner::Now() const {
  if (!workspace_.IsOpen()) return {};
  const HostSession& session = workspace_.Session();
  Moment now{session.GetCallouts(), {}, session.GetView()->GetDirtyCount()};
  for (const auto& annotation : session.GetScene()->GetAnnoSet()->GetAnnotations()) {
    const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
    if (callout) now.textWrites[static_cast<unsigned>(callout->Id())] = callout->GetSetTextCount();
  }
  return now;
}

void ScriptRunner::Print(const std::string& line, std::size_t number, bool echo, const Answer& answer,
                         const Moment& before) {
  const Moment after = Now();
  const CalloutChanges changes = CompareCallouts(before.callouts, after.callouts);
  if (!json_) {
    if (echo) output_ << "> " << line << "\n";
    output_ << answer.text;
    if (!workspace_.Quits()) output_ << DescribeChanges(changes) << "\n";
    output_.flush();
    return;
  }
  nlohmann::ordered_json object{{"line", number}, {"command", SplitWords(line)}};
  if (!answer.data.is_null()) object["answer"] = answer.data;
  object["changes"] = ChangesToJson(changes);
  unsigned writes = 0;
  for (const auto& [id, count] : after.textWrites) {
    const auto known = before.textWrites.find(id);
    if (known != before.textWrites.end()) writes += count - known->second;
  }
  object["labelsWritten"] = writes;
  object["redraws"] = after.redraws - before.redraws;
  object["message"] = DescribeChanges(changes);
  output_ << Text(object) << std::endl;
}

void ScriptRunner::PrintError(const std::string& line, std::size_t number, const std::string& error) {
  if (json_) output_ << Text({{"line", number}, {"text", line}, {"error", error}}) << std::endl;
}

bool ScriptRunner::RunLine(const std::string& line, std::size_t number, bool echo, std::string& error) {
  try {
    const Words words = SplitWords(line);
    if (words.empty()) return true;
    const Command& command = FindCommand(words);
    const Moment before = Now();
    const Document* const document = workspace_.IsOpen() ? &workspace_.Current() : nullptr;
    const Answer answer = command.handler(workspace_, words);
    if (workspace_.IsOpen()) zrk::World::GetWorld()->GetTaskPool()->WaitIdle();
    const bool sameModel = workspace_.IsOpen() && document == &workspace_.Current();
    Print(line, number, echo, answer, sameModel ? before : Now());
    return true;
  } catch (const CommandError& failure) {
    error = failure.message;
  } catch (const std::exception& failure) {
    error = std::string("stopped: ") + failure.what();
  }
  PrintError(line, number, error);
  return false;
}

int RunScriptCommand(const std::vector<std::string>& arguments) {
  bool json = false;
  std::string script;
  for (const std::string& argument : arguments) {
    if (argument == "--json") {
      json = true;
    } else if (argument == "--help" || argument == "-h") {
      std::cout << kUsage << "\nOne command a line; # begins a comment.\n\n" << CommandSummary(AllCommands());
      return kExitDone;
    } else if (argument.empty() || (argument[0] == '-' && argument != "-") || !script.empty()) {
      return Fail("zrfigure: run: '" + argument + "' is not understood; " + kUsage);
    } else {
      script = argument;
    }
  }
  if (script.empty()) return Fail("zrfigure: run: no script given; " + std::string(kUsage));
  return RunFile(script, json);
}

}  // namespace zrfigure
