#pragma once
// A scene with two parts, and the callouts that tests of the engine put on them.

#include <dg/FMat33.h>
#include <dg/Location.h>

#include "support/SceneFixture.h"

namespace zrtest {

/// Callouts that are made are in no set yet; those that are added are in the scene.
class EngineFixture : public SceneFixture {
protected:
  using SceneFixture::SceneFixture;

  [[nodiscard]] CalloutPtr MakeNumber(const Part& part, std::uint32_t item = 0) const {
    return MakeCallout(NumberTemplate(), part, item);
  }
  CalloutPtr AddNumber(const Part& part, std::uint32_t item = 0) { return AddCallout(NumberTemplate(), part, item); }
  [[nodiscard]] CalloutPtr MakeNote(const Part& part) const { return MakeCallout(TextTemplate("Note"), part); }
  CalloutPtr AddNote(const Part& part) { return AddCallout(TextTemplate("Note"), part); }
  CalloutPtr AddNoteOnAssembly(const Part& assembly) {
    auto callout = MakeNote(Part{});
    AddAssemblyLeader(callout, assembly);
    Add(callout);
    return callout;
  }
  [[nodiscard]] bool IsIn(const du::SmartPtr<zrk::Annotation>& annotation) const {
    return scene_->GetAnnoSet()->Contains(annotation);
  }
  static void Move(const Part& part, double x) {
    part.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(x, 0, 0)));
  }

  const Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  const Part nut_ = structure_->AddPart(structure_->Root(), "nut");
};

}  // namespace zrtest
