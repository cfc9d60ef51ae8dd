#pragma once

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/Property.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsListObserver.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/SbomTreeObserver.h>

namespace zrtest {

using Instances = std::set<du::SmartPtr<zrk::illustration::SbomInstance>>;
using Log = std::vector<std::string>;

/// Writes down every notification of a structure tree.
class TreeRecorder final : public zrk::illustration::SbomTreeObserver {
public:
  using Part = du::SmartPtr<zrk::illustration::SbomInstance>;

  void OnBeginUpdate() override { log.push_back("begin"); }
  void OnEndUpdate() override { log.push_back("end"); }
  void OnDestroy() override { log.push_back("destroy"); }
  void OnAddInstance(const Part& part) override { log.push_back("add " + part->GetId().GetString()); }
  void OnRemoveInstance(const Part& part) override { log.push_back("remove " + part->GetId().GetString()); }
  void OnAddProperty(const Part&, const du::Symbol&, const du::Symbol& name) override { Note("new", name); }
  void OnRemoveProperty(const Part&, const du::Symbol&, const du::Symbol& name) override { Note("gone", name); }
  void OnPropertyChanged(const Part&, const du::Symbol&, const du::Symbol& name) override { Note("changed", name); }
  void OnPropertyGroupChanged(const Part&, const du::Symbol& group) override { Note("group", group); }

  Log log;

private:
  void Note(const std::string& what, const du::Symbol& name) { log.push_back(what + " " + name.GetString()); }
};

/// Writes down every notification of an items list.
class ItemsRecorder final : public zrk::illustration::ItemsListObserver {
public:
  void OnItemAdded(unsigned itemId) override { Note("added", itemId); }
  void OnItemRemoved(unsigned itemId) override { Note("removed", itemId); }
  void OnItemContentChanged(unsigned itemId, const Instances& added, const Instances& removed) override {
    std::ostringstream text;
    text << "changed " << itemId << " +" << added.size() << " -" << removed.size();
    log.push_back(text.str());
  }
  void OnItemIndicated(unsigned itemId, bool indicated) override { Note(indicated ? "marked" : "unmarked", itemId); }
  void OnListCleared() override { log.push_back("cleared"); }

  Log log;

private:
  void Note(const std::string& what, unsigned itemId) { log.push_back(what + " " + std::to_string(itemId)); }
};

/// A scene with a structure whose root is "product".
class StructureTest : public testing::Test {
protected:
  using Part = du::SmartPtr<zrk::illustration::SbomInstance>;
  using Node = du::SmartPtr<zrk::ComponentNode>;

  StructureTest() { scene_->SetSbomTree(tree_); }
  ~StructureTest() override { scene_->Destroy(); }

  static Node MakeNode(const std::string& name) { return zrk::MakeObject<zrk::ComponentNode>(name); }

  Part AddPart(const Node& node, const Part& parent) {
    return tree_->AddInstance(parent, node->GetName(), zrk::MakeObject<zrk::Instance>(node, nullptr, node->GetName()));
  }
  Part AddPart(const Node& node) { return AddPart(node, root_); }
  Part AddGroup(const std::string& name, const Part& parent) { return tree_->AddInstance(parent, name, nullptr); }

  [[nodiscard]] du::SmartPtr<zrk::Operation> MakeOperation() const {
    return zrk::MakeObject<zrk::Operation>("test", scene_, true);
  }

  const du::SmartPtr<zrk::illustration::Illustration3dScene> scene_ =
      zrk::MakeObject<zrk::illustration::Illustration3dScene>();
  const du::SmartPtr<zrk::illustration::SbomTree> tree_ = zrk::MakeObject<zrk::illustration::SbomTree>();
  const Part root_ = tree_->CreateRoot("product", nullptr);
};

}  // namespace zrtest
