#include "script/Workspace.h"

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

int Workspace::FindOccurrence(const std::string& name) const {
  const OccurrenceTree& tree = Current().Tree();
  const HostStructure& structure = Session().GetStructure();
  std::vector<int> found;
  for (int occurrence : tree.DepthFirst()) {
    const auto& instance = structure.GetSbomInstance(occurrence);
    if (structure.GetTree()->FindInstance(instance->GetId().GetString()) != instance) continue;
    if (tree.InstancePath(occurrence) == name) return occurrence;
    const bool named = tree.GetModel().occurrences[occurrence].name == name ||
                       zrk::illustration::SceneEdit::GetDisplayName(instance) == name;
    if (named) found.push_back(occurrence);
  }
  if (found.empty()) throw CommandError{"there is no part '" + name + "'"};
  if (found.size() == 1) return found.front();
  throw CommandError{"'" + name + "' names " + std::to_string(found.size()) + " parts: use a path such as '" +
                     tree.InstancePath(found.front()) + "'"};
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

void Workspace::Edit(const std::string& name, const std::string& refusal,
                     const std::function<bool(const du::SmartPtr<zrk::Operation>&)>& edit) const {
  const auto operation = zrk::MakeObject<zrk::Operation>(name, Session().GetScene(), true);
  {
    const zrk::CurrentOperation current(operation);
    if (!edit(operation)) throw CommandError{refusal};
  }
  zrk::RecordOperation(operation);
}

}  // namespace zrfigure
