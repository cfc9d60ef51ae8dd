#include <zrk/illustration/CalloutEngineMgr.h>

#include <zrannotations/Inset.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/Callouts.h>
#include <zrk/illustration/LabelContent.h>

#include "../HostFixture.h"

namespace zrtest {

using zrk::illustration::CalloutEngineMgr;

/// An engine that writes down how it is set up and ended, and ends its scene when a shape appears.
struct RecordingEngine final : zrk::illustration::Callouts {
  using Pieces = std::vector<du::SmartPtr<zrk::illustration::LabelContent>>;

  ~RecordingEngine() override { log.push_back("gone"); }

  void InitializeShapeViewObserver() override { log.push_back("view"); }
  void OnShapeInstanceLocation(const ShapePtr&) override {}
  void OnShapeInstanceVisibility(const ShapePtr&, bool) override {}
  void OnShapeInstanceCreate(const ShapePtr&) override {
    log.push_back("create");
    OnSceneDestroy();
  }
  void OnShapeInstanceRemove(const ShapePtr&) override {}
  void OnAddAnnotation(const AnnotationPtr& note) override {
    log.push_back("add " + std::to_string(note->GetAnnotationType()));
  }
  void OnRemoveAnnotation(const AnnotationPtr&) override {}
  void OnAnnotationModified(const AnnotationPtr&, bool) override {}
  void OnAnnotationDeleted(const AnnotationPtr&, const OperationPtr&) override {}
  void OnHandleTimeoutEvent(const du::SmartPtr<zrk::ShapeView>&, dg::Camera3D&) override {}
  void OnBackgroundColor(const du::SmartPtr<zrk::ShapeView>&) override {}
  void OnPaletteColorChanged() override {}
  void OnWindowSize() override {}
  void Destroy() override {
    log.push_back("destroy");
    UnregisterObservers();
    Callouts::Destroy();
  }
  void GetCalloutSetForSbomInstance(const PartPtr&, std::set<CalloutPtr>&) override {}
  void GenerateLabelString(const CalloutPtr&, Pieces, bool, std::string&) override {}
  void GenerateLabelStringFor2DCallout(const du::SmartPtr<zrk::Scene>&, Pieces, bool, std::string&, bool,
                                       std::uint32_t) override {}

  static inline Log log;
};

bool CreateEngine(const std::string&, const std::string&, const std::string&, du::SmartPtr<du::RefCounted>& out) {
  out = du::SmartPtr<du::RefCounted>(MakeObject<RecordingEngine>());
  return true;
}

class CalloutEngineMgrTest : public HostFixture {
protected:
  CalloutEngineMgrTest() {
    RecordingEngine::log.clear();
    mgr_.SetComponent(&CreateEngine);
  }
  ~CalloutEngineMgrTest() override { mgr_.SetComponent(nullptr); }

  CalloutEngineMgr& mgr_ = CalloutEngineMgr::Instance();
};

TEST_F(CalloutEngineMgrTest, NewEngineLearnsSymbolsAndInsetsThenCalloutsThenViewAndEndsWithTheScene) {
  const auto set = scene_->GetAnnoSet();
  set->AddAnnotationToSet(MakeObject<zrannotations::Callout>(), nullptr);
  set->AddAnnotationToSet(MakeObject<zrannotations::Inset>(), nullptr);
  set->AddAnnotationToSet(MakeObject<zrannotations::Callout>(), nullptr);
  scene_->AddView(MakeObject<zrk::ShapeView>());
  EXPECT_EQ(mgr_.CreateEngineForScene(scene_), mgr_.CreateEngineForScene(scene_)) << "one engine a scene";
  scene_->Destroy();
  EXPECT_EQ(RecordingEngine::log, (Log{"add 3", "add 2", "add 2", "view", "destroy", "gone"}));
  EXPECT_FALSE(mgr_.GetCalloutsEngineForScene(scene_));
}

TEST_F(CalloutEngineMgrTest, EngineSurvivesBeingDestroyedInsideItsOwnEvent) {
  mgr_.CreateEngineForScene(scene_);
  AddShape(root_, 1, {});
  EXPECT_EQ(RecordingEngine::log, (Log{"create", "destroy", "gone"}));
}

}  // namespace zrtest
