#pragma once

#include <zrk/illustration/ItemsListObserver.h>
#include <zrk/illustration/SbomTreeObserver.h>

#include "../HostFixture.h"

namespace zrtest {

/// Writes down every notification of a structure tree or an items list.
struct Recorder final : zrk::illustration::SbomTreeObserver, zrk::illustration::ItemsListObserver {
  void OnBeginUpdate() override { log.push_back("begin"); }
  void OnEndUpdate() override { log.push_back("end"); }
  void OnDestroy() override { log.push_back("destroy"); }
  void OnAddInstance(const PartPtr& part) override { Note("add", part->GetId()); }
  void OnRemoveInstance(const PartPtr& part) override { Note("remove", part->GetId()); }
  void OnAddProperty(const PartPtr&, const du::Symbol&, const du::Symbol& name) override { Note("new", name); }
  void OnRemoveProperty(const PartPtr&, const du::Symbol&, const du::Symbol& name) override { Note("gone", name); }
  void OnPropertyChanged(const PartPtr&, const du::Symbol&, const du::Symbol& name) override { Note("changed", name); }
  void OnPropertyGroupChanged(const PartPtr&, const du::Symbol& group) override { Note("group", group); }
  void OnItemAdded(unsigned itemId) override { Note("added", itemId); }
  void OnItemRemoved(unsigned itemId) override { Note("removed", itemId); }
  void OnItemContentChanged(unsigned itemId, const PartSet& added, const PartSet& removed) override {
    Note("changed", itemId);
    log.back() += " +" + std::to_string(added.size()) + " -" + std::to_string(removed.size());
  }
  void OnItemIndicated(unsigned itemId, bool indicated) override { Note(indicated ? "marked" : "unmarked", itemId); }
  void OnListCleared() override { log.push_back("cleared"); }

  void Note(const std::string& what, const du::Symbol& name) { log.push_back(what + " " + name.GetString()); }
  void Note(const std::string& what, unsigned itemId) { log.push_back(what + " " + std::to_string(itemId)); }
  Log log;
};

/// A scene with a structure whose root is "product".
class StructureTest : public HostFixture {
protected:
  StructureTest() : HostFixture("product") {}
};

}  // namespace zrtest
