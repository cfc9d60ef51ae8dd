#include "script/Completion.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
#include <utility>

#include <zrannotations/Inset.h>
#include <zrk/AnnoSet.h>
#include <zrk/illustration/Illustration3dScene.h>

#include "commands/AlignModes.h"
#include "script/CommandTable.h"
#include "script/CommandWords.h"

// The usage of a command says what stands where: words in small letters stand for themselves, those in capitals for a
// kind of thing, '|' separates alternatives, "..." repeats, brackets hold what may be left out.

namespace zrfigure {
namespace {

namespace fs = std::filesystem;
using Choices = std::vector<std::string>;

Choices SplitAt(const std::string& text, char separator) {
  Choices parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) {
    if (!part.empty()) parts.push_back(part);
  }
  return parts;
}

Choices CommandNames() {
  Choices names;
  for (const Command& command : AllCommands()) names.emplace_back(command.name);
  return names;
}

Choices CalloutIds(const Workspace& workspace) {
  Choices ids;
  for (const CalloutState& callout : workspace.Session().GetCallouts()) ids.push_back(std::to_string(callout.id));
  return ids;
}

Choices ItemNumbers(const Workspace& workspace) {
  Choices numbers;
  for (const ItemState& item : workspace.Session().GetItems()) numbers.push_back(item.number);
  return numbers;
}

Choices InsetIds(const Workspace& workspace) {
  Choices ids;
  for (const auto& annotation : workspace.Session().GetScene()->GetAnnoSet()->GetAnnotations()) {
    if (du::DynamicCast<zrannotations::Inset>(annotation)) ids.push_back(std::to_string(annotation->Id()));
  }
  return ids;
}

/// Files and folders that begin like `begun`; folders end in '/'.
Choices FilesLike(const std::string& begun) {
  const std::string folder = begun.substr(0, begun.find_last_of('/') + 1);
  Choices files;
  std::error_code failure;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    const std::string name = entry->path().filename().string();
    if (name.starts_with('.')) continue;
    std::error_code ignored;
    files.push_back(folder + name + (entry->is_directory(ignored) ? "/" : ""));
  }
  return files;
}

Choices TemplatesLike(const std::string& begun) {
  Choices templates{"number", "number-quantity", "number-tag", "number-name"};
  for (std::string& file : FilesLike(begun)) {
    if (file.ends_with(".json") || file.ends_with("/")) templates.push_back(std::move(file));
  }
  return templates;
}

/// Everything of a kind; nothing for kinds that cannot be listed, such as numbers, and without a model for its
/// contents.
Choices ChoicesOf(const std::string& kind, const std::string& begun, const Workspace& workspace) {
  static const std::map<std::string, Choices> kFixed{
      {"VIEW", {"iso", "front", "top", "right", "left", "back", "bottom"}},
      {"LANG", {"en", "de", "fr", "ja"}},
      {"SETTING", {"one-per-item", "combine", "per-instance", "flat", "hierarchical"}}};
  if (const auto fixed = kFixed.find(kind); fixed != kFixed.end()) return fixed->second;
  if (kind == "COMMAND") return CommandNames();
  if (kind == "MODE") return SplitAt(AlignModeNames() + ", line", ',');
  if (kind == "FILE") return FilesLike(begun);
  if (kind == "TEMPLATE") return TemplatesLike(begun);
  if (!workspace.IsOpen()) return {};
  if (kind == "PART" || kind == "GLOB") return workspace.PartNames();
  if (kind == "CALLOUT") return CalloutIds(workspace);
  if (kind == "ITEM") return ItemNumbers(workspace);
  if (kind == "INSET") return InsetIds(workspace);
  return {};
}

/// What the usage has at an argument's place: one word of it, or, from the first that may be left out on, all the rest.
Choices KindsAt(const char* usage, std::size_t argument) {
  const Choices words = SplitAt(usage, ' ');
  std::size_t begin = 0;
  while (begin < argument && begin < words.size() && words[begin].front() != '[') ++begin;
  const bool bracketed = begin < words.size() && words[begin].front() == '[' && begin < argument;
  const bool repeats = !words.empty() && words.back().ends_with("...");
  if (begin == words.size() && !repeats) return {};
  begin = std::min(begin, words.size() - 1);
  std::size_t end = begin + 1;
  if (bracketed || words[begin].starts_with("[--")) end = words.size();
  Choices kinds;
  for (std::string word :
       Choices(words.begin() + static_cast<std::ptrdiff_t>(begin), words.begin() + static_cast<std::ptrdiff_t>(end))) {
    std::erase_if(word, [](char c) { return c == '[' || c == ']' || c == '.'; });
    for (std::string& alternative : SplitAt(word, '|')) kinds.push_back(std::move(alternative));
  }
  return kinds;
}

Choices CandidatesFor(const OpenLine& line, const Workspace& workspace) {
  if (line.words.empty()) return CommandNames();
  Choices candidates;
  for (const Command& command : AllCommands()) {
    if (line.words.front() != command.name) continue;
    for (const std::string& kind : KindsAt(command.usage, line.words.size() - 1)) {
      const bool isLiteral = kind.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
      const Choices more = isLiteral ? Choices{kind} : ChoicesOf(kind, line.last, workspace);
      candidates.insert(candidates.end(), more.begin(), more.end());
    }
  }
  return candidates;
}

std::string CommonBegin(const Choices& choices) {
  std::string common = choices.front();
  for (const std::string& choice : choices) {
    const auto differ = std::mismatch(common.begin(), common.end(), choice.begin(), choice.end()).first;
    common.erase(differ, common.end());
  }
  // A character of several bytes is taken whole or not at all.
  while (!common.empty() && common.size() < choices.front().size() &&
         (static_cast<unsigned char>(choices.front()[common.size()]) & 0xC0) == 0x80) {
    common.pop_back();
  }
  return common;
}

}  // namespace

Completion CompleteLine(std::string_view line, const Workspace& workspace) {
  const OpenLine open = SplitOpenLine(line);
  Completion completion{open.begin, {}, CandidatesFor(open, workspace)};
  Choices& choices = completion.choices;
  for (std::string& choice : choices) choice.erase(0, choice.find_first_not_of(' '));
  std::erase_if(choices, [&](const std::string& choice) { return !choice.starts_with(open.last); });
  std::sort(choices.begin(), choices.end());
  choices.erase(std::unique(choices.begin(), choices.end()), choices.end());
  if (choices.empty()) return completion;
  const bool done = choices.size() == 1 && !choices.front().ends_with('/');
  completion.replacement = QuoteWord(CommonBegin(choices), done) + (done ? " " : "");
  return completion;
}

}  // namespace zrfigure
