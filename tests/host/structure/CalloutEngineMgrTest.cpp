#include <zrk/illustration/CalloutEngineMgr.h>

#include <zrannotations/Inset.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/Callouts.h>
#include <zrk/illustration/LabelContent.h>

#include "StructureFixture.h"

namespace zrtest {

using zrk::illustration::CalloutEngineMgr;

/// An engine that writes down what the host tells it.
struct RecordingEngine final : zrk::illustration::Callouts {
  using View = du::SmartPtr<zrk::ShapeView>;
  using Pieces = std::vector<du::SmartPtr<zrk::illustration::LabelContent>>;

  RecordingEngine() = default;
  explicit RecordingEngine(const du::SmartPtr<zrk::ShapeScene>& scene) { RecordingEngine::Initialize(scene); }
  ~RecordingEngine() override { log.push_back("gone"); }

  void InitializeShapeViewObserver() override { log.push_back("view"); }
  void OnShapeInstanceLocation(const ShapePtr&) override { log.push_back("location"); }
  void OnShapeInstanceVisibility(const ShapePtr&, bool visible) override {
    log.push_back(visible ? "shown" : "hidden");
  }
  void OnShapeInstanceCreate(const ShapePtr&) override {
    log.push_back("create");
    if (destroyOnCreate) OnSceneDestroy();
  }
  void OnShapeInstanceRemove(const ShapePtr&) override { log.push_back("remove"); }
  void OnAddAnnotation(const AnnotationPtr& note) override {
    log.push_back("add " + std::to_string(note->GetAnnotationType()));
  }
  void OnRemoveAnnotation(const AnnotationPtr&) override { log.push_back("take"); }
  void OnAnnotationModified(const AnnotationPtr&, bool) override { log.push_back("modified"); }
  void OnAnnotationDeleted(const AnnotationPtr&, const OperationPtr&) override { log.push_back("deleted"); }
  void OnHandleTimeoutEvent(const View&, dg::Camera3D&) override { log.push_back("timeout"); }
  void OnBackgroundColor(const View&) override { log.push_back("background"); }
  void OnPaletteColorChanged() override { log.push_back("palette"); }
  void OnWindowSize() override { log.push_back("window"); }
  void Destroy() override {
    log.push_back("destroy");
    UnregisterObservers();
    Callouts::Destroy();
  }
  void GetCalloutSetForSbomInstance(const PartPtr&, std::set<CalloutPtr>&) override {}
  void GenerateLabelString(const CalloutPtr&, Pieces, bool, std::string&) override {}
  void GenerateLabelStringFor2DCallout(const du::SmartPtr<zrk::Scene>&, Pieces, bool, std::string&, bool,
                                       std::uint32_t) override {}

  bool destroyOnCreate = false;
  static inline Log log;
};

bool CreateEngine(const std::string& action, const std::string& kind, const std::string& name,
                  du::SmartPtr<du::RefCounted>& out) {
  if (action != "create" || kind != "callouts" || name != "calloutengine") return false;
  out = du::SmartPtr<du::RefCounted>(MakeObject<RecordingEngine>());
  return true;
}

template <bool something>
bool CreateNoEngine(const std::string&, const std::string&, const std::string&, du::SmartPtr<du::RefCounted>& out) {
  if (something) out = du::SmartPtr<du::RefCounted>(MakeObject<zrk::ComponentNode>("no engine"));
  return true;
}

class CalloutEngineMgrTest : public StructureTest {
protected:
  CalloutEngineMgrTest() { RecordingEngine::log.clear(); }
  ~CalloutEngineMgrTest() override { mgr_.SetComponent(nullptr); }

  du::SmartPtr<RecordingEngine> CreateRecorder() {
    mgr_.SetComponent(&CreateEngine);
    return du::DynamicCast<RecordingEngine>(mgr_.CreateEngineForScene(scene_));
  }
  ShapePtr AddShape() { return HostFixture::AddShape(root_, 1, {}); }

  CalloutEngineMgr& mgr_ = CalloutEngineMgr::Instance();
};

TEST_F(CalloutEngineMgrTest, NewEngineLearnsSymbolsAndInsetsThenCalloutsThenView) {
  const auto set = scene_->GetAnnoSet();
  set->AddAnnotationToSet(MakeObject<zrannotations::Callout>(), nullptr);
  set->AddAnnotationToSet(MakeObject<zrannotations::Inset>(), nullptr);
  set->AddAnnotationToSet(MakeObject<zrannotations::Callout>(), nullptr);
  scene_->AddView(MakeObject<zrk::ShapeView>());

  const auto engine = CreateRecorder();
  ASSERT_TRUE(engine);
  EXPECT_EQ(RecordingEngine::log, (Log{"add 3", "add 2", "add 2", "view"}));
  EXPECT_EQ(mgr_.GetCalloutsEngineForScene(scene_), engine);
  EXPECT_EQ(mgr_.CreateEngineForScene(scene_), engine) << "one engine a scene";
  EXPECT_EQ(engine->GetAnnoSet(), set);
}

TEST_F(CalloutEngineMgrTest, NoEngineWhenTheComponentYieldsNone) {
  EXPECT_FALSE(mgr_.CreateEngineForScene(scene_)) << "no component";
  for (const auto create : {&CreateNoEngine<false>, &CreateNoEngine<true>}) {
    mgr_.SetComponent(create);
    EXPECT_FALSE(mgr_.CreateEngineForScene(scene_));
    EXPECT_FALSE(mgr_.GetCalloutsEngineForScene(scene_));
  }
  mgr_.SetComponent(&CreateEngine);
  EXPECT_FALSE(mgr_.CreateEngineForScene(nullptr));
  mgr_.UnregisterEngine(scene_);
}

TEST_F(CalloutEngineMgrTest, EventsOfSceneAndViewsReachTheEngine) {
  const auto engine = CreateRecorder();
  const auto view = MakeObject<zrk::ShapeView>();
  scene_->AddView(view);
  scene_->AddView(MakeObject<zrk::ShapeView>());
  const auto shape = AddShape();
  shape->SetLocation(dg::Location());
  shape->SetVisible(false);
  scene_->RemoveShapeInstance(shape);
  view->SetBackgroundColors({}, {}, {});
  scene_->NotifyPaletteChanged();
  view->SetWindowSize(10, 10);
  view->FireTimeout();
  const auto callout = MakeObject<zrannotations::Callout>();
  const auto set = scene_->GetAnnoSet();
  set->AddAnnotationToSet(callout, nullptr);
  callout->NotifyModified(true);
  set->RemoveAnnotationWithDependencies(callout, MakeOperation());
  EXPECT_EQ(RecordingEngine::log, (Log{"view", "create", "location", "hidden", "remove", "background", "palette",
                                       "window", "timeout", "add 2", "modified", "deleted", "take"}));
}

TEST_F(CalloutEngineMgrTest, SceneEndDestroysAndReleasesTheEngine) {
  CreateRecorder();
  scene_->Destroy();
  EXPECT_EQ(RecordingEngine::log, (Log{"destroy", "gone"}));
  EXPECT_FALSE(mgr_.GetCalloutsEngineForScene(scene_));
  AddShape();
  EXPECT_EQ(RecordingEngine::log.size(), 2u);
}

TEST_F(CalloutEngineMgrTest, EngineSurvivesBeingDestroyedInsideItsOwnEvent) {
  CreateRecorder()->destroyOnCreate = true;
  AddShape();
  EXPECT_EQ(RecordingEngine::log, (Log{"create", "destroy", "gone"}));
}

TEST_F(CalloutEngineMgrTest, EngineMadeByConstructorHearsAndEndsWithoutTheManager) {
  auto other = MakeObject<RecordingEngine>(scene_);
  scene_->NotifyPaletteChanged();
  EXPECT_FALSE(mgr_.GetCalloutsEngineForScene(scene_));
  other.Reset();
  EXPECT_EQ(RecordingEngine::log, (Log{"palette", "gone"}));
  EXPECT_TRUE(scene_->GetListeners().empty());

  const auto registered = CreateRecorder();
  other = MakeObject<RecordingEngine>(scene_);
  other->OnSceneDestroy();
  EXPECT_FALSE(other->GetScene());
  EXPECT_EQ(mgr_.GetCalloutsEngineForScene(scene_), registered);
}

}  // namespace zrtest
