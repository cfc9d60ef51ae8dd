#pragma once

#include <ios>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Markup.h>
#include <zrk/Operation.h>
#include <zrk/Property.h>
#include <zrk/RecordOperation.h>
#include <zrk/SceneListener.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/ItemsListObserver.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/SbomTreeObserver.h>
#include <zrk/illustration/SceneEdit.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrtest {

using Log = std::vector<std::string>;
using OperationPtr = du::SmartPtr<zrk::Operation>;
using PartPtr = du::SmartPtr<zrk::illustration::SbomInstance>;
using ShapePtr = du::SmartPtr<zrk::ShapeInstance>;
using AnnotationPtr = du::SmartPtr<zrk::Annotation>;
using CalloutPtr = du::SmartPtr<zrannotations::Callout>;
using PartSet = std::set<PartPtr>;
using zrannotations::AnnotationEdit;
using zrk::illustration::SceneEdit;

inline std::string IdOf(const ShapePtr& shape) {
  const auto part = shape->GetInstance()->GetSbomInstance();
  return (part ? part->GetId() : shape->GetInstance()->GetId()).GetString();
}

/// Writes down what a scene says, and lets its callouts follow parts as the program's component does.
class FollowingRecorder final : public zrk::SceneListener {
public:
  FollowingRecorder(zrk::Scene& scene, Log& log) : scene_(scene), log_(log) {}

  void OnShapeInstanceLocation(const ShapePtr& shape) override {
    log_.push_back("moved " + IdOf(shape));
    for (const auto& callout : Callouts()) callout->OnShapeInstanceLocation(shape);
  }
  void OnShapeInstanceVisibility(const ShapePtr& shape, bool visible) override {
    log_.push_back((visible ? "shown " : "hidden ") + IdOf(shape));
    for (const auto& callout : Callouts()) callout->SetVisible(IdOf(shape), visible);
  }
  void OnShapeInstanceCreate(const ShapePtr& shape) override {
    log_.push_back("created " + IdOf(shape));
    for (const auto& callout : Callouts()) callout->OnShapeInstanceCreate(shape);
  }
  void OnShapeInstanceRemove(const ShapePtr& shape) override { log_.push_back("removed " + IdOf(shape)); }
  void OnAddAnnotation(const AnnotationPtr& annotation) override { Note("added", annotation); }
  void OnRemoveAnnotation(const AnnotationPtr& annotation) override { Note("left", annotation); }
  void OnAnnotationDeleted(const AnnotationPtr& annotation, const OperationPtr&) override {
    Note("deleted", annotation);
  }

  std::map<unsigned, std::string> names;

private:
  [[nodiscard]] std::vector<CalloutPtr> Callouts() const {
    std::vector<CalloutPtr> callouts;
    for (const auto& annotation : scene_.GetAnnoSet()->GetAnnotations()) {
      if (auto callout = du::DynamicCast<zrannotations::Callout>(annotation)) callouts.push_back(callout);
    }
    return callouts;
  }
  void Note(const std::string& what, const AnnotationPtr& annotation) {
    const auto name = names.find(annotation->Id());
    log_.push_back(what + " " + (name == names.end() ? "annotation" : name->second));
  }

  zrk::Scene& scene_;
  Log& log_;
};

/// Writes down what a structure and an item list say.
class TreeRecorder final : public zrk::illustration::SbomTreeObserver {
public:
  explicit TreeRecorder(Log& log) : log_(log) {}
  void OnBeginUpdate() override { log_.push_back("begin"); }
  void OnEndUpdate() override { log_.push_back("end"); }
  void OnAddInstance(const PartPtr& part) override { log_.push_back("in tree " + part->GetId().GetString()); }
  void OnRemoveInstance(const PartPtr& part) override { log_.push_back("out of tree " + part->GetId().GetString()); }
  void OnPropertyChanged(const PartPtr&, const du::Symbol&, const du::Symbol& name) override {
    log_.push_back("changed " + name.GetString());
  }

private:
  Log& log_;
};

class ItemsRecorder final : public zrk::illustration::ItemsListObserver {
public:
  explicit ItemsRecorder(Log& log) : log_(log) {}
  void OnItemAdded(unsigned itemId) override { log_.push_back("item " + std::to_string(itemId)); }
  void OnItemRemoved(unsigned itemId) override { log_.push_back("no item " + std::to_string(itemId)); }
  void OnItemContentChanged(unsigned itemId, const PartSet& added, const PartSet& removed) override {
    log_.push_back("item " + std::to_string(itemId) + " +" + std::to_string(added.size()) + " -" +
                   std::to_string(removed.size()));
  }

private:
  Log& log_;
};

/// A gearbox: housing, and drive with shaft, gear and two equal bolts; every part has a shape and a place in the item
/// list, and a callout each stands on shaft, gear and housing.
class EditsTest : public testing::Test {
protected:
  EditsTest() {
    scene_->SetSbomTree(tree_);
    drive_ = tree_->AddInstance(root_, "drive", nullptr);
    const auto bolt = zrk::MakeObject<zrk::ComponentNode>("bolt");
    housing_ = AddPart(root_, zrk::MakeObject<zrk::ComponentNode>("housing"), 0.1);
    shaft_ = AddPart(drive_, zrk::MakeObject<zrk::ComponentNode>("shaft"), 0.2);
    gear_ = AddPart(drive_, zrk::MakeObject<zrk::ComponentNode>("gear"), 0.3);
    bolt_ = AddPart(drive_, bolt, 0.4);
    otherBolt_ = AddPart(drive_, bolt, 0.5);
    for (const PartPtr& part : {housing_, shaft_, gear_, bolt_, otherBolt_})
      items_->AddInstance(part, nullptr, false, "");
    for (const PartPtr& part : {shaft_, gear_, housing_}) callouts_.push_back(AddCallout(part));
    callouts_.front()->SetLabelPlacementState(1);
    scene_->AddListener(listener_);
    tree_->RegisterObserver(zrk::MakeObject<TreeRecorder>(log_), false);
    items_->GetZrkItemList()->RegisterObserver(zrk::MakeObject<ItemsRecorder>(log_));
  }
  ~EditsTest() override { scene_->Destroy(); }

  PartPtr AddPart(const PartPtr& parent, const du::SmartPtr<zrk::ComponentNode>& node, double at) {
    const auto instance = zrk::MakeObject<zrk::Instance>(node, nullptr, node->GetName());
    auto part = tree_->AddInstance(parent, node->GetName(), instance);
    scene_->AddShapeInstance(zrk::MakeObject<zrk::ShapeInstance>(
        instance, zrk::MakeObject<zrk::Shape>(node->GetName()), dg::DBox({-1, -1, -1}, {1, 1, 1}),
        dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(at, at / 3, 0))));
    return part;
  }

  CalloutPtr AddCallout(const PartPtr& part) {
    const auto callout = zrk::MakeObject<zrannotations::Callout>();
    callout->Initialize(template_, ShapeOf(part));
    callout->SetText(du::Symbol(part->GetName()), false);
    listener_->names[callout->Id()] = "callout " + part->GetName();
    scene_->GetAnnoSet()->AddAnnotationToSet(callout, nullptr);
    return callout;
  }

  [[nodiscard]] ShapePtr ShapeOf(const PartPtr& part) const {
    return scene_->GetShapeInstance(part->GetEbomInstance());
  }
  [[nodiscard]] OperationPtr MakeOperation() const { return zrk::MakeObject<zrk::Operation>("edit", scene_, true); }
  bool Undo() { return zrk::UndoHistory::Undo(scene_); }
  bool Redo() { return zrk::UndoHistory::Redo(scene_); }
  Log TakeLog() { return std::exchange(log_, {}); }

  /// Everything that edits change, bit by bit.
  [[nodiscard]] std::string Describe() const {
    std::ostringstream out;
    out << std::hexfloat;
    for (const auto& shape : scene_->GetShapeInstances()) {
      out << shape.Get() << ' ' << IdOf(shape) << ' ' << shape->IsVisible() << ' ';
      Describe(out, shape->GetLocation().GetPos());
    }
    Describe(out, root_);
    for (const unsigned itemId : items_->GetZrkItemList()->GetItemIds()) DescribeItem(out, itemId);
    for (const auto& annotation : scene_->GetAnnoSet()->GetAnnotations()) DescribeAnnotation(out, annotation);
    for (const auto& callout : callouts_) out << callout->Id() << " in " << callout->GetParent().Get() << '\n';
    return out.str();
  }

  const du::SmartPtr<zrk::illustration::Illustration3dScene> scene_ =
      zrk::MakeObject<zrk::illustration::Illustration3dScene>();
  const du::SmartPtr<zrk::illustration::SbomTree> tree_ = zrk::MakeObject<zrk::illustration::SbomTree>();
  const du::SmartPtr<zritemlist::ItemList> items_ = zritemlist::ItemList::CreateItemListForScene(scene_);
  const du::SmartPtr<zrk::illustration::TAnnotation> template_ = zrk::MakeObject<zrk::illustration::TAnnotation>();
  Log log_;
  const du::SmartPtr<FollowingRecorder> listener_ = zrk::MakeObject<FollowingRecorder>(*scene_, log_);
  const PartPtr root_ = tree_->CreateRoot("gearbox", nullptr);
  PartPtr drive_, housing_, shaft_, gear_, bolt_, otherBolt_;
  std::vector<CalloutPtr> callouts_;

private:
  static void Describe(std::ostream& out, const dg::DPoint3D& point) {
    out << point.x << ' ' << point.y << ' ' << point.z << '\n';
  }
  void Describe(std::ostream& out, const PartPtr& part) const {
    out << part->GetId().GetString() << ' ' << SceneEdit::GetDisplayName(part) << ' '
        << (tree_->FindInstance(part->GetId().GetString()) == part) << (part->GetParent() ? "below" : "top");
    const auto material = part->GetProperty({}, du::Symbol("material"));
    out << ' ' << (material ? material->GetValue().GetString() : "none") << '\n';
    for (const PartPtr& child : part->GetChildren()) Describe(out, child);
  }
  void DescribeItem(std::ostream& out, unsigned itemId) const {
    zrk::illustration::ItemRow row;
    items_->GetZrkItemList()->GetRow(itemId, row);
    out << row.id << ' ' << row.values.label << ' ' << row.values.quantity << ' ' << row.values.tag << ' '
        << row.values.index;
    for (const PartPtr& part : row.instances) out << ' ' << part->GetId().GetString();
    out << '\n';
  }
  static void DescribeAnnotation(std::ostream& out, const AnnotationPtr& annotation) {
    out << annotation->Id() << ' ' << annotation->GetScene().Get() << '\n';
    const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
    if (!callout) return;
    out << callout->GetText(false).GetString() << ' ';
    Describe(out, callout->GetPosition());
    for (const auto& leader : callout->GetLeaders()) {
      out << leader->GetShapeInstanceId() << ' ' << leader->IsVisible() << leader->IsHidden() << ' ';
      Describe(out, leader->GetAnchor());
    }
    const auto combined = du::DynamicCast<zrannotations::CombinedCallout>(annotation);
    if (!combined) return;
    for (const auto& member : combined->GetCalloutVec()) DescribeAnnotation(out, member);
  }
};

}  // namespace zrtest
