#pragma once

#include <functional>
#include <map>

#include <zrk/ComponentInstance.h>
#include <zrk/SceneListener.h>
#include <zrk/illustration/LabelContent.h>

#include "../HostFixture.h"

namespace zrtest {

/// Writes down what it hears, with the names given to the annotations; may react to an addition.
struct RecordingListener final : zrk::SceneListener {
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
  Log Take() { return std::exchange(events, {}); }
  void Record(const std::string& event, const AnnotationPtr& annotation) {
    events.push_back(event + " " + names[annotation.Get()]);
  }

  std::map<const zrk::Annotation*, std::string> names;
  Log events;
  std::function<void(const AnnotationPtr&)> onAdd;
};

/// A scene of a gearbox: a housing (box of 2, at 10,0,0), and an assembly "drive" of a shaft (box of 4, at 0,20,0) and
/// a gear (box of 2, at 0,30,0); and a 3D symbol.
class AnnotationFixture : public HostFixture {
protected:
  AnnotationFixture() : HostFixture("gearbox") {
    scene_->AddListener(listener_);
    scene_->AddShapeInstance(symbol_);
  }

  /// A template of one piece: "item", "property" or anything else as literal text.
  static TemplatePtr MakeTemplate(const std::string& kind) {
    const auto result = MakeObject<zrk::illustration::TAnnotation>();
    result->SetTextContent({new zrk::illustration::LabelContent(kind, {})}, true);
    result->SetRequires(kind == "item", kind == "property");
    return result;
  }
  CalloutPtr MakeCallout(const ShapePtr& shape, const std::string& kind = "item") {
    const auto callout = MakeObject<zrannotations::Callout>();
    callout->Initialize(MakeTemplate(kind), shape);
    return Name(callout, "callout");
  }
  AnnotationPtr MakeAnnotation(const std::string& name) { return Name(MakeObject<zrk::Annotation>(), name); }

  template <class T>
  du::SmartPtr<T> Name(const du::SmartPtr<T>& annotation, const std::string& name) {
    listener_->names[annotation.Get()] = name;
    return annotation;
  }
  [[nodiscard]] Log GetMemberNames() const {
    Log names;
    for (const AnnotationPtr& member : set_->GetAnnotations()) names.push_back(listener_->names[member.Get()]);
    return names;
  }

  static void AddLeader(const CalloutPtr& callout, const ShapePtr& shape, const dg::DPoint3D& anchor = {}) {
    callout->ConnectLeader(callout->CreateCalloutLeader(anchor, shape));
  }
  /// '+' for every leader that is drawn, '-' for every other one.
  static std::string Drawn(const CalloutPtr& callout) {
    std::string drawn;
    for (const auto& leader : callout->GetLeaders()) drawn += leader->IsDrawn() ? '+' : '-';
    return drawn;
  }
  /// As the engine does for every callout on the part.
  static void Move(const CalloutPtr& callout, const ShapePtr& shape, const dg::Location& to) {
    shape->SetLocation(to);
    callout->OnShapeInstanceLocation(shape);
  }

  const du::SmartPtr<zrk::AnnoSet> set_ = scene_->GetAnnoSet();
  const du::SmartPtr<RecordingListener> listener_{new RecordingListener};
  const PartPtr drive_ = AddGroup("drive", root_);
  const ShapePtr housing_ = AddShape(AddPart(MakeNode("housing")), 2, At({10, 0, 0}));
  const ShapePtr shaft_ = AddShape(AddPart(MakeNode("shaft"), drive_), 4, At({0, 20, 0}));
  const ShapePtr gear_ = AddShape(AddPart(MakeNode("gear"), drive_), 2, At({0, 30, 0}));
  const ShapePtr symbol_ =
      MakeObject<zrk::ShapeInstance>(MakeObject<zrk::Instance>(MakeObject<zrk::ComponentInstance>("weld-1"), nullptr),
                                     MakeObject<zrk::Shape>("arrow"), MakeBox(1), dg::Location::IDENTITY);
};

inline void ExpectPoint(const dg::DPoint3D& actual, double x, double y, double z) {
  EXPECT_NEAR(actual.x, x, 1e-9);
  EXPECT_NEAR(actual.y, y, 1e-9);
  EXPECT_NEAR(actual.z, z, 1e-9);
}

}  // namespace zrtest
