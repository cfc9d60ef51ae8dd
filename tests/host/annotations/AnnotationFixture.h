#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <du/RefCounted.h>
#include <zrannotations/Callout.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSet.h>
#include <zrk/Annotation.h>
#include <zrk/ComponentInstance.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/Markup.h>
#include <zrk/Operation.h>
#include <zrk/RecordOperation.h>
#include <zrk/SceneListener.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrtest {

using AnnotationPtr = du::SmartPtr<zrk::Annotation>;
using CalloutPtr = du::SmartPtr<zrannotations::Callout>;
using OperationPtr = du::SmartPtr<zrk::Operation>;
using SbomPtr = du::SmartPtr<zrk::illustration::SbomInstance>;
using ShapePtr = du::SmartPtr<zrk::ShapeInstance>;
using TemplatePtr = du::SmartPtr<zrk::illustration::TAnnotation>;

/// Writes down what it hears, with the names given to the annotations; may react to an addition.
class RecordingListener final : public zrk::SceneListener {
public:
  void OnAddAnnotation(const AnnotationPtr& annotation) override {
    Record("add", annotation);
    if (onAdd) onAdd(annotation);
  }
  void OnRemoveAnnotation(const AnnotationPtr& annotation) override { Record("remove", annotation); }
  void OnAnnotationDeleted(const AnnotationPtr& annotation, const OperationPtr&) override {
    Record("deleted", annotation);
  }
  void OnAnnotationModified(const AnnotationPtr& annotation, bool geometryOnly) override {
    Record(geometryOnly ? "moved" : "changed", annotation);
  }
  std::vector<std::string> Take() { return std::exchange(events, {}); }

  std::map<const zrk::Annotation*, std::string> names;
  std::vector<std::string> events;
  std::function<void(const AnnotationPtr&)> onAdd;

private:
  void Record(const std::string& event, const AnnotationPtr& annotation) {
    events.push_back(event + " " + names[annotation.Get()]);
  }
};

using Events = std::vector<std::string>;

/// A scene of a gearbox: a housing (box of 2, at 10,0,0), and an assembly "drive" of a shaft (box of 4, at 0,20,0) and
/// a gear (box of 2, at 0,30,0); and a 3D symbol. No object may be left after a test.
class AnnotationFixture : public ::testing::Test {
protected:
  AnnotationFixture() {
    scene_ = zrk::MakeObject<zrk::illustration::Illustration3dScene>();
    set_ = scene_->GetAnnoSet();
    tree_ = zrk::MakeObject<zrk::illustration::SbomTree>();
    scene_->SetSbomTree(tree_);
    listener_ = new RecordingListener;
    scene_->AddListener(listener_);
    root_ = tree_->CreateRoot("gearbox", nullptr);
    drive_ = tree_->AddInstance(root_, "drive", nullptr);
    housing_ = AddPart(root_, "housing", dg::DPoint3D(10, 0, 0), 2);
    shaft_ = AddPart(drive_, "shaft", dg::DPoint3D(0, 20, 0), 4);
    gear_ = AddPart(drive_, "gear", dg::DPoint3D(0, 30, 0), 2);
    symbol_ = zrk::MakeObject<zrk::ShapeInstance>(
        zrk::MakeObject<zrk::Instance>(zrk::MakeObject<zrk::ComponentInstance>("weld-1"), nullptr),
        zrk::MakeObject<zrk::Shape>("arrow"), MakeBox(1), dg::Location::IDENTITY);
    scene_->AddShapeInstance(symbol_);
  }

  ~AnnotationFixture() override {
    scene_->Destroy();
    for (ShapePtr* shape : {&housing_, &shaft_, &gear_, &symbol_}) shape->Reset();
    root_.Reset();
    drive_.Reset();
    tree_.Reset();
    set_.Reset();
    listener_.Reset();
    scene_.Reset();
    EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), liveBefore_) << "the test left counted objects behind";
  }

  static dg::DBox MakeBox(double size) {
    return {dg::DPoint3D(-size / 2, -size / 2, -size / 2), dg::DPoint3D(size / 2, size / 2, size / 2)};
  }

  static dg::Location At(const dg::DPoint3D& position, double scale = 1) {
    return {dg::FMat33::Scale(scale), position};
  }

  ShapePtr AddPart(const SbomPtr& parent, const std::string& name, const dg::DPoint3D& position, double size) {
    const auto instance = zrk::MakeObject<zrk::Instance>(zrk::MakeObject<zrk::ComponentNode>(name), nullptr, name);
    static_cast<void>(tree_->AddInstance(parent, name, instance));
    const auto shape =
        zrk::MakeObject<zrk::ShapeInstance>(instance, zrk::MakeObject<zrk::Shape>(name), MakeBox(size), At(position));
    scene_->AddShapeInstance(shape);
    return shape;
  }

  /// A template of one piece: "item", "property" or anything else as literal text.
  static TemplatePtr MakeTemplate(const std::string& kind) {
    const auto result = zrk::MakeObject<zrk::illustration::TAnnotation>();
    result->SetTextContent({new zrk::illustration::LabelContent(kind, {})}, true);
    result->SetRequires(kind == "item", kind == "property");
    return result;
  }

  CalloutPtr MakeCallout(const ShapePtr& shape, const std::string& kind = "item") {
    const auto callout = zrk::MakeObject<zrannotations::Callout>();
    callout->Initialize(MakeTemplate(kind), shape);
    return Name(callout, "callout");
  }

  template <class T>
  du::SmartPtr<T> Name(const du::SmartPtr<T>& annotation, const std::string& name) {
    listener_->names[annotation.Get()] = name;
    return annotation;
  }

  AnnotationPtr MakeAnnotation(const std::string& name) { return Name(zrk::MakeObject<zrk::Annotation>(), name); }

  [[nodiscard]] Events GetMemberNames() const {
    Events names;
    for (const AnnotationPtr& member : set_->GetAnnotations()) names.push_back(listener_->names[member.Get()]);
    return names;
  }

  OperationPtr MakeOperation() { return zrk::MakeObject<zrk::Operation>("test", scene_, true); }

  const long liveBefore_ = du::RefCounted::GetLiveObjectCount();
  du::SmartPtr<zrk::illustration::Illustration3dScene> scene_;
  du::SmartPtr<zrk::AnnoSet> set_;
  du::SmartPtr<zrk::illustration::SbomTree> tree_;
  du::SmartPtr<RecordingListener> listener_;
  SbomPtr root_;
  SbomPtr drive_;
  ShapePtr housing_;
  ShapePtr shaft_;
  ShapePtr gear_;
  ShapePtr symbol_;
};

inline void ExpectPoint(const dg::DPoint3D& actual, double x, double y, double z) {
  EXPECT_NEAR(actual.x, x, 1e-9);
  EXPECT_NEAR(actual.y, y, 1e-9);
  EXPECT_NEAR(actual.z, z, 1e-9);
}

}  // namespace zrtest
