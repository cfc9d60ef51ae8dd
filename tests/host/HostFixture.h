#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <zrannotations/Callout.h>
#include <zrk/AnnoSet.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/SceneListener.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsListObserver.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/SbomTreeObserver.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrtest {

using zrk::MakeObject;
using zrk::RecordOperation;
using AnnotationPtr = du::SmartPtr<zrk::Annotation>;
using CalloutPtr = du::SmartPtr<zrannotations::Callout>;
using Log = std::vector<std::string>;
using NodePtr = du::SmartPtr<zrk::ComponentNode>;
using OperationPtr = du::SmartPtr<zrk::Operation>;
using PartPtr = du::SmartPtr<zrk::illustration::SbomInstance>;
using PartSet = std::set<PartPtr>;
using ShapePtr = du::SmartPtr<zrk::ShapeInstance>;
using TemplatePtr = du::SmartPtr<zrk::illustration::TAnnotation>;

/// Writes down every notification of a structure tree or an items list, and those of a scene about annotations, with
/// the names given to these.
struct Recorder : zrk::SceneListener, zrk::illustration::SbomTreeObserver, zrk::illustration::ItemsListObserver {
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

  void OnAddAnnotation(const AnnotationPtr& note) override { Note("added", note); }
  void OnRemoveAnnotation(const AnnotationPtr& note) override { Note("left", note); }
  void OnAnnotationDeleted(const AnnotationPtr& note, const OperationPtr&) override { Note("deleted", note); }
  void OnAnnotationModified(const AnnotationPtr& note, bool geometryOnly) override {
    Note(geometryOnly ? "adjusted" : "modified", note);
  }

  void Note(const std::string& what, const du::Symbol& name) { log.push_back(what + " " + name.GetString()); }
  void Note(const std::string& what, unsigned itemId) { log.push_back(what + " " + std::to_string(itemId)); }
  void Note(const std::string& what, const AnnotationPtr& note) {
    const auto name = names.find(note.Get());
    log.push_back(what + " " + (name == names.end() ? "annotation" : name->second));
  }
  Log Take() { return std::exchange(log, {}); }

  std::map<const zrk::Annotation*, std::string> names;
  Log log;
};

/// A scene with a structure. No object may be left after a test.
class HostFixture : public testing::Test {
protected:
  explicit HostFixture(const std::string& rootName = "product") : root_(tree_->CreateRoot(rootName, nullptr)) {
    scene_->SetSbomTree(tree_);
  }
  ~HostFixture() override {
    scene_->Destroy();
    root_.Reset();
    tree_.Reset();
    scene_.Reset();
    EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), liveBefore_) << "the test left counted objects behind";
  }

  static NodePtr MakeNode(const std::string& name) { return MakeObject<zrk::ComponentNode>(name); }
  static dg::Location At(const dg::DPoint3D& place, double scale = 1) { return {dg::FMat33::Scale(scale), place}; }
  static dg::DBox MakeBox(double size) {
    return {dg::DPoint3D(-size / 2, -size / 2, -size / 2), dg::DPoint3D(size / 2, size / 2, size / 2)};
  }

  PartPtr AddPart(const NodePtr& node, const PartPtr& parent) {
    return tree_->AddInstance(parent, node->GetName(), MakeObject<zrk::Instance>(node, nullptr, node->GetName()));
  }
  PartPtr AddPart(const NodePtr& node) { return AddPart(node, root_); }
  PartPtr AddGroup(const std::string& name, const PartPtr& parent) { return tree_->AddInstance(parent, name, nullptr); }
  ShapePtr AddShape(const PartPtr& part, double size, const dg::Location& location) {
    auto shape = MakeObject<zrk::ShapeInstance>(part->GetEbomInstance(), MakeObject<zrk::Shape>(part->GetName()),
                                                MakeBox(size), location);
    scene_->AddShapeInstance(shape);
    return shape;
  }

  [[nodiscard]] OperationPtr MakeOperation() const { return MakeObject<zrk::Operation>("test", scene_, true); }
  bool Undo() { return zrk::UndoHistory::Undo(scene_); }
  bool Redo() { return zrk::UndoHistory::Redo(scene_); }

private:
  const long liveBefore_ = du::RefCounted::GetLiveObjectCount();

protected:
  du::SmartPtr<zrk::illustration::Illustration3dScene> scene_ = MakeObject<zrk::illustration::Illustration3dScene>();
  du::SmartPtr<zrk::illustration::SbomTree> tree_ = MakeObject<zrk::illustration::SbomTree>();
  PartPtr root_;
};

}  // namespace zrtest
