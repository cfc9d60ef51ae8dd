// Commands that change the item list. Items are named by their numbers.

#include <set>
#include <utility>

#include <zrannotations/CalloutOperationStep.h>
#include <zrannotations/CombinedCallout.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomInstance.h>

#include "script/CommandTable.h"
#include "script/CommandWords.h"
#include "script/TextTable.h"
#include "script/Workspace.h"
#include "zrcallouts/CalloutGenerator.h"
#include "zrcallouts/Callouts.h"

namespace zrfigure {
namespace {

using PartPtr = du::SmartPtr<zrk::illustration::SbomInstance>;

Answer ListItems(Workspace& workspace, const Words& /*words*/) {
  const OccurrenceTree& tree = workspace.Current().Tree();
  TextTable table({"number", "id", "quantity", "tag", "parts"});
  Answer answer;
  answer.data = nlohmann::ordered_json::array();
  for (const ItemState& item : workspace.Session().GetItems()) {
    std::string names;
    std::vector<std::string> paths;
    for (int occurrence : item.occurrences) {
      paths.push_back(tree.InstancePath(occurrence));
      names += (names.empty() ? "" : ", ") + tree.GetModel().occurrences[occurrence].name;
    }
    table.Add({item.number, std::to_string(item.id), std::to_string(item.quantity), item.tag, names});
    answer.data.push_back(
        {{"number", item.number}, {"id", item.id}, {"quantity", item.quantity}, {"tag", item.tag}, {"parts", paths}});
  }
  answer.text = table.Text();
  return answer;
}

/// Combined callouts lose only a member with the item; the steps keep what they were.
void SnapshotCombined(const Workspace& workspace, unsigned item, const du::SmartPtr<zrk::Operation>& operation) {
  for (const auto& annotation : workspace.Session().GetScene()->GetAnnoSet()->GetAnnotations()) {
    const auto combined = du::DynamicCast<zrannotations::CombinedCallout>(annotation);
    if (!combined || !combined->CarriesItemId(item)) continue;
    operation->AddStep(
        zrk::MakeObject<zrannotations::CalloutOperationStep>(du::SmartPtr<zrannotations::Callout>(combined)));
  }
}

Answer RemoveItem(Workspace& workspace, const Words& words) {
  const unsigned item = workspace.FindItem(words[1]);
  const HostSession& session = workspace.Session();
  workspace.Edit(words[0], "", [&](const auto& operation) {
    SnapshotCombined(workspace, item, operation);
    const auto generator = zrk::MakeObject<zrcallouts::CalloutGenerator>(session.GetEngine());
    generator->RemoveFromItemIds({item}, operation);
    session.GetItemList()->DeleteItem(item, operation);
    return true;
  });
  return {};
}

Answer SetQuantity(Workspace& workspace, const Words& words) {
  const unsigned item = workspace.FindItem(words[1]);
  const unsigned quantity = CountOf(words[2], "quantity");
  workspace.Edit(words[0], "", [&](const auto& operation) {
    workspace.Session().GetItemList()->GetZrkItemList()->SetQuantity(item, quantity, operation);
    return true;
  });
  return {};
}

Answer SetTag(Workspace& workspace, const Words& words) {
  const unsigned item = workspace.FindItem(words[1]);
  workspace.Edit(words[0], "", [&](const auto& operation) {
    workspace.Session().GetItemList()->GetZrkItemList()->SetItemTag(item, words[2], operation);
    return true;
  });
  return {};
}

/// A part that joined an item of parts of another kind.
class JoinStep final : public zrk::OperationStep {
public:
  JoinStep(du::SmartPtr<zrk::illustration::ItemsList> list, unsigned item, PartPtr part)
      : list_(std::move(list)), item_(item), part_(std::move(part)), quantity_(list_->GetQuantity(item)) {}

  void Undo() override { list_->LeaveRow(item_, part_, quantity_); }
  void Redo() override { list_->JoinRow(item_, part_, quantity_ + 1); }

private:
  const du::SmartPtr<zrk::illustration::ItemsList> list_;
  const unsigned item_;
  const PartPtr part_;
  const unsigned quantity_;
};

// The host itself puts a part into the item of its kind, or into a new one where there is none of its kind.
Answer AddToItem(Workspace& workspace, const Words& words) {
  const auto& list = workspace.Session().GetItemList();
  const auto items = list->GetZrkItemList();
  const auto& part = workspace.FindPart(words[2]);
  const unsigned item = words[1] == "new" ? 0 : workspace.FindItem(words[1]);
  unsigned present = 0;
  if (items->GetItemIdForInstance(part, present)) {
    throw CommandError{"'" + words[2] + "' is in item " + items->GetItemLabel(present) +
                       ": remove it from there first"};
  }
  const bool hasKind = list->GetMatchingItem(part, present);
  if (item == 0 && hasKind) {
    throw CommandError{"'" + words[2] + "' is of the kind of item " + items->GetItemLabel(present) +
                       ", and a kind has one item"};
  }
  workspace.Edit(words[0], "the item list does not take '" + words[2] + "'", [&](const auto& operation) {
    if (item == 0 || (hasKind && present == item)) return list->AddInstance(part, operation, true, {}) != 0;
    const auto step = zrk::MakeObject<JoinStep>(items, item, part);
    operation->AddStep(step);
    step->Redo();
    return true;
  });
  return {};
}

Answer RemoveFromItem(Workspace& workspace, const Words& words) {
  const auto& list = workspace.Session().GetItemList();
  const unsigned item = workspace.FindItem(words[1]);
  const auto& part = workspace.FindPart(words[2]);
  unsigned present = 0;
  if (!list->GetZrkItemList()->GetItemIdForInstance(part, present) || present != item) {
    throw CommandError{"'" + words[2] + "' is not in item " + words[1]};
  }
  workspace.Edit(words[0], "", [&](const auto& operation) { return list->RemoveInstance(part, operation) != 0; });
  return {};
}

Answer ClearItems(Workspace& workspace, const Words& words) {
  if (workspace.Session().GetItems().empty()) throw CommandError{"the item list is empty"};
  workspace.Edit(words[0], "", [&](const auto& operation) {
    workspace.Session().GetItemList()->ClearList(operation);
    return true;
  });
  return {};
}

}  // namespace

std::vector<Command> ItemCommands() {
  return {
      {"items", "", "Show the item list", 0, 0, ListItems},
      {"remove-item", "ITEM", "Remove an item with its callouts", 1, 1, RemoveItem},
      {"set-quantity", "ITEM NUMBER", "Set an item's quantity", 2, 2, SetQuantity},
      {"set-tag", "ITEM TAG", "Set an item's tag", 2, 2, SetTag},
      {"add-to-item", "ITEM|new PART", "Put a part into an item, or a part of a new kind into a new one", 2, 2,
       AddToItem},
      {"remove-from-item", "ITEM PART", "Take a part out of its item", 2, 2, RemoveFromItem},
      {"clear-items", "", "Remove all items with their callouts", 0, 0, ClearItems},
  };
}

}  // namespace zrfigure
