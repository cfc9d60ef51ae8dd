// What a user does to the parts list.

#include <zrcallouts/CalloutGenerator.h>
#include <zrk/MakeObject.h>

#include "HostCall.h"

namespace zrfuzz {

namespace {

std::string AddItem(LiveScene& live, unsigned first, unsigned second) {
  const Part& part = live.PartAt(first);
  const std::string label = second >= 192 ? std::to_string(second) : std::string();
  live.Edit("add item",
            [&](const auto& operation) { live.itemList->AddInstance(part.sbom, operation, (second & 1) != 0, label); });
  return "give " + part.Id() + " an item" + (label.empty() ? "" : " with number " + label);
}

std::string RemoveFromItem(LiveScene& live, unsigned first, unsigned /*second*/) {
  const Part& part = live.PartAt(first);
  live.Edit("remove from item", [&](const auto& operation) { live.itemList->RemoveInstance(part.sbom, operation); });
  return "take " + part.Id() + " out of its item";
}

// No number is empty: an empty label replaces no text, so undo could not bring one back.
std::string ChangeItem(LiveScene& live, unsigned first, unsigned second) {
  const unsigned item = live.ItemAt(first);
  const unsigned value = second / 6;
  static const char* const kWhat[] = {"number", "quantity", "tag", "index", "hierarchy", "itemized"};
  live.Edit("change item", [&](const auto& operation) {
    switch (second % 6) {
      case 0:
        return live.items->SetItemLabel(item, std::to_string(value), operation);
      case 1:
        return live.items->SetQuantity(item, value, operation);
      case 2:
        return live.items->SetItemTag(item, std::string(value % 3, 't'), operation);
      case 3:
        return live.items->SetIndex(item, value, operation);
      case 4:
        return live.items->SetHierarchyIndex(item, {value % 3, value}, operation);
      default:
        return live.items->SetItemized(item, value % 2 == 0, operation);
    }
  });
  return "set " + std::string(kWhat[second % 6]) + " of item " + std::to_string(item) + " to " + std::to_string(value);
}

std::string DeleteItem(LiveScene& live, unsigned first, unsigned /*second*/) {
  const unsigned item = live.ItemAt(first);
  live.Edit("delete item", [&](const auto& operation) {
    zrk::MakeObject<zrcallouts::CalloutGenerator>(live.engine)->RemoveFromItemIds({item}, operation);
    live.itemList->DeleteItem(item, operation);
  });
  return "delete item " + std::to_string(item);
}

std::string ClearList(LiveScene& live, unsigned /*first*/, unsigned /*second*/) {
  live.Edit("clear list", [&](const auto& operation) { live.itemList->ClearList(operation); });
  return "clear the item list";
}

// Texts in the history are numbered as before, so it goes.
std::string NumberItems(LiveScene& live, unsigned first, unsigned /*second*/) {
  live.ClearHistory();
  const bool hierarchical = first % 2 != 0;
  live.items->SetNumberingSettings({hierarchical});
  return std::string("number items ") + (hierarchical ? "hierarchically" : "flat");
}

std::string ChangeManyItems(LiveScene& live, unsigned first, unsigned second) {
  const unsigned item = live.ItemAt(second);
  live.Edit("change many", [&](const auto& operation) {
    live.items->BeginUpdate();
    live.itemList->AddInstance(live.PartAt(first).sbom, operation, false, {});
    live.items->SetItemTag(item, std::to_string(first), operation);
    live.itemList->RemoveInstance(live.PartAt(second).sbom, operation);
    live.items->EndUpdate();
  });
  return "as one update: give " + live.PartAt(first).Id() + " an item, tag item " + std::to_string(item) + ", take " +
         live.PartAt(second).Id() + " out of its item";
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {{10, Effect::Recorded, AddItem},       {6, Effect::Recorded, RemoveFromItem},
                               {8, Effect::Recorded, ChangeItem},     {3, Effect::Recorded, DeleteItem},
                               {1, Effect::Recorded, ClearList},      {1, Effect::Aside, NumberItems},
                               {2, Effect::Recorded, ChangeManyItems}};

}  // namespace

std::span<const HostCall> ItemCalls() {
  return kCalls;
}

}  // namespace zrfuzz
