#include "StructureFixture.h"

#include <zrannotations/Callout.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSet.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/Callouts.h>
#include <zrk/illustration/LabelContent.h>

namespace zrtest {

using zrk::illustration::CalloutEngineMgr;

namespace {

/// An engine that writes down what the host tells it.
class RecordingEngine final : public zrk::illustration::Callouts {
public:
  using Shape = du::SmartPtr<zrk::ShapeInstance>;
  using Note = du::SmartPtr<zrk::Annotation>;
  using View = du::SmartPtr<zrk::ShapeView>;
  using Pieces = std::vector<du::SmartPtr<zrk::illustration::LabelContent>>;

  RecordingEngine() = default;
  explicit RecordingEngine(const du::SmartPtr<zrk::ShapeScene>& scene) { RecordingEngine::Initialize(scene); }
  ~RecordingEngine() override { log.push_back("gone"); }

  void InitializeShapeViewObserver() override { log.push_back("view"); }
  void OnShapeInstanceLocation(const Shape&) override { log.push_back("location"); }
  void OnShapeInstanceVisibility(const Shape&, bool visible) override { log.push_back(visible ? "shown" : "hidden"); }
  void OnShapeInstanceCreate(const Shape&) override {
    log.push_back("create");
    if (destroyOnCreate) OnSceneDestroy();
  }
  void OnShapeInstanceRemove(const Shape&) override { log.push_back("remove"); }
  void OnAddAnnotation(const Note& note) override { log.push_back("add " + std::to_string(note->GetAnnotationType())); }
  void OnRemoveAnnotation(const Note&) override { log.push_back("take"); }
  void OnAnnotationModified(const Note&, bool) override { log.push_back("modified"); }
  void OnAnnotationDeleted(const Note&, const du::SmartPtr<zrk::Operation>&) override { log.push_back("deleted"); }
  void OnHandleTimeoutEvent(const View&, dg::Camera3D&) override { log.push_back("timeout"); }
  void OnBackgroundColor(const View&) override { log.push_back("background"); }
  void OnPaletteColorChanged() override { log.push_back("palette"); }
  void OnWindowSize() override { log.push_back("window"); }
  void Destroy() override {
    log.push_back("destroy");
    UnregisterObservers();
    Callouts::Destroy();
  }
  void GetCalloutSetForSbomInstance(const du::SmartPtr<zrk::illustration::SbomInstance>&,
                                    std::set<du::SmartPtr<zrannotations::Callout>>&) override {}
  void GenerateLabelString(const du::SmartPtr<zrannotations::Callout>&, Pieces, bool, std::string&) override {}
  void GenerateLabelStringFor2DCallout(const du::SmartPtr<zrk::Scene>&, Pieces, bool, std::string&, bool,
                                       std::uint32_t) override {}

  bool destroyOnCreate = false;
  static inline Log log;
};

bool CreateEngine(const std::string& action, const std::string& kind, const std::string& name,
                  du::SmartPtr<du::RefCounted>& out) {
  if (action != "create" || kind != "callouts" || name != "calloutengine") return false;
  out = du::SmartPtr<du::RefCounted>(zrk::MakeObject<RecordingEngine>());
  return true;
}

bool CreateNothing(const std::string&, const std::string&, const std::string&, du::SmartPtr<du::RefCounted>& out) {
  out.Reset();
  return true;
}

bool CreateSomethingElse(const std::string&, const std::string&, const std::string&,
                         du::SmartPtr<du::RefCounted>& out) {
  out = du::SmartPtr<du::RefCounted>(zrk::MakeObject<zrk::ComponentNode>("no engine"));
  return true;
}

}  // namespace

class CalloutEngineMgrTest : public StructureTest {
protected:
  CalloutEngineMgrTest() { RecordingEngine::log.clear(); }
  ~CalloutEngineMgrTest() override { mgr_.SetComponent(nullptr); }

  du::SmartPtr<RecordingEngine> CreateRecorder() {
    mgr_.SetComponent(&CreateEngine);
    return du::DynamicCast<RecordingEngine>(mgr_.CreateEngineForScene(scene_));
  }
  static du::SmartPtr<zrk::ShapeInstance> MakeShape() {
    return zrk::MakeObject<zrk::ShapeInstance>(nullptr, nullptr, dg::DBox(), dg::Location());
  }

  CalloutEngineMgr& mgr_ = CalloutEngineMgr::Instance();
};

TEST_F(CalloutEngineMgrTest, NewEngineLearnsSymbolsAndInsetsThenCalloutsThenView) {
  const auto set = scene_->GetAnnoSet();
  set->AddAnnotationToSet(zrk::MakeObject<zrannotations::Callout>(), nullptr);
  set->AddAnnotationToSet(zrk::MakeObject<zrannotations::Inset>(), nullptr);
  set->AddAnnotationToSet(zrk::MakeObject<zrannotations::Callout>(), nullptr);
  scene_->AddView(zrk::MakeObject<zrk::ShapeView>());

  const auto engine = CreateRecorder();
  ASSERT_TRUE(engine);
  EXPECT_EQ(RecordingEngine::log, (Log{"add 3", "add 2", "add 2", "view"}));
  EXPECT_EQ(mgr_.GetCalloutsEngineForScene(scene_), engine);
  EXPECT_EQ(mgr_.CreateEngineForScene(scene_), engine) << "one engine a scene";
  EXPECT_EQ(engine->GetAnnoSet(), set);
}

TEST_F(CalloutEngineMgrTest, NoEngineWhenTheComponentYieldsNone) {
  EXPECT_FALSE(mgr_.CreateEngineForScene(scene_)) << "no component";
  for (const auto create : {&CreateNothing, &CreateSomethingElse}) {
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
  const auto view = zrk::MakeObject<zrk::ShapeView>();
  scene_->AddView(view);
  scene_->AddView(zrk::MakeObject<zrk::ShapeView>());
  const auto shape = MakeShape();
  scene_->AddShapeInstance(shape);
  shape->SetLocation(dg::Location());
  shape->SetVisible(false);
  scene_->RemoveShapeInstance(shape);
  view->SetBackgroundColors({}, {}, {});
  scene_->NotifyPaletteChanged();
  view->SetWindowSize(10, 10);
  view->FireTimeout();
  const auto callout = zrk::MakeObject<zrannotations::Callout>();
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
  scene_->AddShapeInstance(MakeShape());
  EXPECT_EQ(RecordingEngine::log.size(), 2u);
}

TEST_F(CalloutEngineMgrTest, EngineSurvivesBeingDestroyedInsideItsOwnEvent) {
  CreateRecorder()->destroyOnCreate = true;
  scene_->AddShapeInstance(MakeShape());
  EXPECT_EQ(RecordingEngine::log, (Log{"create", "destroy", "gone"}));
}

TEST_F(CalloutEngineMgrTest, EngineMadeByConstructorHearsEventsWithoutTheManager) {
  auto engine = zrk::MakeObject<RecordingEngine>(scene_);
  scene_->NotifyPaletteChanged();
  EXPECT_FALSE(mgr_.GetCalloutsEngineForScene(scene_));
  engine.Reset();
  EXPECT_EQ(RecordingEngine::log, (Log{"palette", "gone"}));
  scene_->NotifyPaletteChanged();
  EXPECT_TRUE(scene_->GetListeners().empty());
}

TEST_F(CalloutEngineMgrTest, DestroyOfAnotherEngineLeavesTheRegisteredOne) {
  const auto registered = CreateRecorder();
  const auto other = zrk::MakeObject<RecordingEngine>(scene_);
  other->OnSceneDestroy();
  EXPECT_FALSE(other->GetScene());
  EXPECT_EQ(mgr_.GetCalloutsEngineForScene(scene_), registered);
  other->OnSceneDestroy();
}

}  // namespace zrtest
