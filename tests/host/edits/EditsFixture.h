#pragma once

#include <ios>
#include <sstream>

#include <zrannotations/AnnotationEdit.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zritemlist/ItemList.h>
#include <zrk/Property.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SceneEdit.h>

#include "../HostFixture.h"

namespace zrtest {

using zrannotations::AnnotationEdit;
using zrk::illustration::SceneEdit;

inline std::string IdOf(const ShapePtr& shape) {
  const auto part = shape->GetInstance()->GetSbomInstance();
  return (part ? part->GetId() : shape->GetInstance()->GetId()).GetString();
}

template <class T>
std::vector<du::SmartPtr<T>> GetAnnotations(const zrk::Scene& scene) {
  std::vector<du::SmartPtr<T>> found;
  for (const auto& annotation : scene.GetAnnoSet()->GetAnnotations()) {
    if (const auto one = du::DynamicCast<T>(annotation)) found.push_back(one);
  }
  return found;
}

/// Writes down what a scene says, too, and lets its callouts follow parts as the program's component does.
class FollowingRecorder final : public Recorder {
public:
  explicit FollowingRecorder(const zrk::Scene& scene) : scene_(scene) {}

  void OnShapeInstanceLocation(const ShapePtr& shape) override {
    log.push_back("moved " + IdOf(shape));
    for (const auto& callout : Callouts()) callout->OnShapeInstanceLocation(shape);
  }
  void OnShapeInstanceVisibility(const ShapePtr& shape, bool visible) override {
    log.push_back((visible ? "shown " : "hidden ") + IdOf(shape));
    for (const auto& callout : Callouts()) callout->SetVisible(IdOf(shape), visible);
  }
  void OnShapeInstanceCreate(const ShapePtr& shape) override {
    log.push_back("created " + IdOf(shape));
    for (const auto& callout : Callouts()) callout->OnShapeInstanceCreate(shape);
  }
  void OnShapeInstanceRemove(const ShapePtr& shape) override { log.push_back("removed " + IdOf(shape)); }

private:
  [[nodiscard]] std::vector<CalloutPtr> Callouts() const { return GetAnnotations<zrannotations::Callout>(scene_); }
  const zrk::Scene& scene_;
};

/// A gearbox: housing, and drive with shaft, gear and two equal bolts; every part has a shape and a place in the item
/// list, and a callout each stands on shaft, gear and housing.
class EditsTest : public HostFixture {
protected:
  EditsTest() : HostFixture("gearbox") {
    double at = 0;
    for (const PartPtr& part : {housing_, shaft_, gear_, bolt_, otherBolt_}) {
      at += 0.1;
      AddShape(part, 2, At({at, at / 3, 0}));
      items_->AddInstance(part, nullptr, false, "");
    }
    for (const PartPtr& part : {shaft_, gear_, housing_}) AddCallout(part);
    callouts_.front()->SetLabelPlacementState(1);
    scene_->AddListener(listener_);
    tree_->RegisterObserver(listener_, false);
    items_->GetZrkItemList()->RegisterObserver(listener_);
  }

  void AddCallout(const PartPtr& part) {
    const auto callout = callouts_.emplace_back(MakeObject<zrannotations::Callout>());
    callout->Initialize(MakeObject<zrk::illustration::TAnnotation>(),
                        scene_->GetShapeInstance(part->GetEbomInstance()));
    callout->SetText(du::Symbol(part->GetName()), false);
    listener_->names[callout.Get()] = "callout " + part->GetName();
    scene_->GetAnnoSet()->AddAnnotationToSet(callout, nullptr);
  }

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

  const du::SmartPtr<zritemlist::ItemList> items_ = zritemlist::ItemList::CreateItemListForScene(scene_);
  const du::SmartPtr<FollowingRecorder> listener_ = MakeObject<FollowingRecorder>(*scene_);
  const NodePtr boltNode_ = MakeNode("bolt");
  const PartPtr drive_ = AddGroup("drive", root_), housing_ = AddPart(MakeNode("housing"));
  const PartPtr shaft_ = AddPart(MakeNode("shaft"), drive_), gear_ = AddPart(MakeNode("gear"), drive_);
  const PartPtr bolt_ = AddPart(boltNode_, drive_), otherBolt_ = AddPart(boltNode_, drive_);
  std::vector<CalloutPtr> callouts_;

private:
  static void Describe(std::ostream& out, const dg::DPoint3D& point) {
    out << point.x << ' ' << point.y << ' ' << point.z << '\n';
  }
  void Describe(std::ostream& out, const PartPtr& part) const {
    out << part->GetId().GetString() << ' ' << SceneEdit::GetDisplayName(part) << ' '
        << (tree_->FindInstance(part->GetId().GetString()) == part) << (part->GetParent() ? "below" : "top");
    const auto material = part->GetProperty({}, du::Symbol("material"), du::Symbol("step"));
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
