#include "script/Workspace.h"

#include <map>
#include <utility>

#include <zrannotations/Callout.h>
#include <zrk/AnnoSet.h>
#include <zrk/CurrentOperation.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/RecordOperation.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/SceneEdit.h>

#include "script/Command.h"
#include "script/CommandWords.h"

namespace zrfigure {

using zrannotations::Callout;

Document& Workspace::Current() const {
  if (!document_) throw CommandError{"no model is open: begin with open MODEL"};
  return *document_;
}

// Two documents cannot be in the host at a time, so the old one goes before the new one comes; by then nothing is left
// that the new model could be refused for.
void Workspace::Open(const std::string& path, const ViewDirection& direction) {
  ImportResult result = imports_.Import(path);
  if (!result.model) throw CommandError{result.error};
  Open(std::move(*result.model), direction);
}

void Workspace::Open(Model model, const ViewDirection& direction) {
  const std::string language = document_ ? document_->Language() : "en";
  if (!host_) {
    auto host = std::make_unique<HostProcess>(language);
    std::string error;
    if (!host->LoadComponent(error)) throw CommandError{error};
    host_ = std::move(host);
  }
  document_.reset();
  document_ = std::make_unique<Document>(std::move(model), direction, language);
}

bool Workspace::IsPresent(int occurrence) const {
  const HostStructure& structure = Session().GetStructure();
  const auto& instance = structure.GetSbomInstance(occurrence);
  return structure.GetTree()->FindInstance(instance->GetId().GetString()) == instance;
}

std::string Workspace::DisplayName(int occurrence) const {
  return zrk::illustration::SceneEdit::GetDisplayName(Session().GetStructure().GetSbomInstance(occurrence));
}

int Workspace::FindOccurrence(const std::string& name) const {
  const OccurrenceTree& tree = Current().Tree();
  std::vector<int> found;
  for (int occurrence : tree.DepthFirst()) {
    if (!IsPresent(occurrence)) continue;
    if (tree.InstancePath(occurrence) == name) return occurrence;
    const bool named = tree.GetModel().occurrences[occurrence].name == name || DisplayName(occurrence) == name;
    if (named) found.push_back(occurrence);
  }
  if (found.empty()) throw CommandError{"there is no part '" + name + "'"};
  if (found.size() == 1) return found.front();
  throw CommandError{"'" + name + "' names " + std::to_string(found.size()) + " parts: use a path such as '" +
                     tree.InstancePath(found.front()) + "'"};
}

std::vector<int> Workspace::FindOccurrences(const std::string& pattern) const {
  if (pattern.find_first_of("*?[") == std::string::npos) return {FindOccurrence(pattern)};
  const OccurrenceTree& tree = Current().Tree();
  std::vector<int> found;
  for (int occurrence : tree.DepthFirst()) {
    if (IsPresent(occurrence) && tree.Matches(occurrence, pattern)) found.push_back(occurrence);
  }
  if (found.empty()) throw CommandError{"'" + pattern + "' matches no part"};
  return found;
}

std::vector<std::string> Workspace::PartNames() const {
  const OccurrenceTree& tree = Current().Tree();
  std::map<std::string, std::vector<int>> named;
  for (int occurrence : tree.DepthFirst()) {
    if (IsPresent(occurrence)) named[tree.GetModel().occurrences[occurrence].name].push_back(occurrence);
  }
  std::vector<std::string> names;
  for (const auto& [name, occurrences] : named) {
    if (occurrences.size() == 1) names.push_back(name);
    if (occurrences.size() == 1) continue;
    for (int occurrence : occurrences) names.push_back(tree.InstancePath(occurrence));
  }
  return names;
}

const du::SmartPtr<zrk::illustration::SbomInstance>& Workspace::FindPart(const std::string& name) const {
  return Session().GetStructure().GetSbomInstance(FindOccurrence(name));
}

unsigned Workspace::FindItem(const std::string& number) const {
  for (const ItemState& item : Session().GetItems()) {
    if (item.number == number) return item.id;
  }
  throw CommandError{"there is no item '" + number + "'"};
}

du::SmartPtr<Callout> Workspace::FindCallout(const std::string& id) const {
  const unsigned wanted = CountOf(id, "callout");
  for (const auto& annotation : Session().GetScene()->GetAnnoSet()->GetAnnotations()) {
    auto callout = du::DynamicCast<Callout>(annotation);
    if (callout && callout->Id() == wanted) return callout;
  }
  throw CommandError{"there is no callout " + id};
}

std::vector<du::SmartPtr<Callout>> Workspace::FindCallouts(const std::vector<std::string>& words,
                                                           std::size_t first) const {
  std::vector<du::SmartPtr<Callout>> callouts;
  if (words.size() == first + 1 && words[first] == "all") {
    for (const CalloutState& state : Session().GetCallouts()) callouts.push_back(FindCallout(std::to_string(state.id)));
    return callouts;
  }
  for (std::size_t i = first; i < words.size(); ++i) {
    auto callout = FindCallout(words[i]);
    for (const auto& known : callouts) {
      if (known == callout) throw CommandError{"callout " + words[i] + " is named twice"};
    }
    callouts.push_back(std::move(callout));
  }
  return callouts;
}

// Taking steps back must not record steps of its own, so it comes when the operation is no longer the current one.
void Workspace::Edit(const std::string& name, const std::string& refusal,
                     const std::function<bool(const du::SmartPtr<zrk::Operation>&)>& edit) const {
  const auto operation = zrk::MakeObject<zrk::Operation>(name, Session().GetScene(), true);
  try {
    const zrk::CurrentOperation current(operation);
    if (!edit(operation)) throw CommandError{refusal};
  } catch (...) {
    operation->Undo();
    throw;
  }
  zrk::RecordOperation(operation);
}

}  // namespace zrfigure
