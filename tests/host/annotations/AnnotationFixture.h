#pragma once

#include <zrk/illustration/LabelContent.h>

#include "../HostFixture.h"

namespace zrtest {

/// Takes what is added out again, if asked to.
struct RecordingListener final : Recorder {
  void OnAddAnnotation(const AnnotationPtr& annotation) override {
    Recorder::OnAddAnnotation(annotation);
    if (refuses) annotation->GetScene()->GetAnnoSet()->RemoveAnnotationFromSet(annotation, nullptr);
  }
  bool refuses = false;
};

/// A scene of a gearbox: a housing (box of 2, at 10,0,0), and an assembly "drive" of a shaft (box of 4, at 0,20,0) and
/// a gear (box of 2, at 0,30,0).
class AnnotationFixture : public HostFixture {
protected:
  AnnotationFixture() : HostFixture("gearbox") { scene_->AddListener(listener_); }

  static TemplatePtr MakeTemplate() { return MakeObject<zrk::illustration::TAnnotation>(); }
  CalloutPtr MakeCallout(const ShapePtr& shape) {
    const auto callout = MakeObject<zrannotations::Callout>();
    callout->Initialize(MakeTemplate(), shape);
    return Name(callout, "callout");
  }
  AnnotationPtr MakeAnnotation(const std::string& name) { return Name(MakeObject<zrk::Annotation>(), name); }

  template <class T>
  du::SmartPtr<T> Name(const du::SmartPtr<T>& annotation, const std::string& name) {
    listener_->names[annotation.Get()] = name;
    return annotation;
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
};

inline void ExpectPoint(const dg::DPoint3D& actual, double x, double y, double z) {
  EXPECT_NEAR(actual.x, x, 1e-9);
  EXPECT_NEAR(actual.y, y, 1e-9);
  EXPECT_NEAR(actual.z, z, 1e-9);
}

}  // namespace zrtest
