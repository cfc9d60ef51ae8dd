#include "support/SceneFixture.h"

#include <dlfcn.h>

#include <du/Localizer.h>
#include <du/TaskPool.h>
#include <du/Tracer.h>
#include <zrannotations/AssemblyShapes.h>
#include <zrcallouts/CalloutGenerator.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/Application.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/ComponentLoader.h>
#include <zrk/illustration/Illustration3dView.h>

using zrk::illustration::CalloutEngineMgr;
using zrk::illustration::ComponentLoader;
using zrk::illustration::Illustration3dScene;

namespace zrtest {

namespace {

// Objects that live as long as the process, made before the first count.
long CountLiveObjects() {
  static const bool warm = [] {
    const auto generator = zrk::MakeObject<zrcallouts::CalloutGenerator>(EnginePtr());
    return static_cast<bool>(generator);
  }();
  return warm ? du::RefCounted::GetLiveObjectCount() : 0;
}

/// Of the library that this test program is linked with.
std::string ComponentPath() {
  Dl_info info{};
  return dladdr(reinterpret_cast<void*>(&zrcallouts::GetCalloutsEngineForScene), &info) != 0 ? info.dli_fname : "";
}

}  // namespace

SceneFixture::SceneFixture(const SceneOptions& options)
    : liveBefore_(CountLiveObjects()), manualTasks_(options.manualTasks) {
  zrk::Kernel::SetKernel(&kernel_);
  world_ = zrk::MakeObject<zrk::World>();
  zrk::World::SetWorld(world_);
  world_->GetTaskPool()->SetManual(options.manualTasks);
  zrk::illustration::SetRunningFoliant(options.authoring);
  if (options.authoring) {
    application_ = zrk::MakeObject<zrkapp::illustration::OrreryApp>();
    zrkapp::illustration::OrreryApp::SetOrreryApp(application_);
  }
  du::Localizer::SetCurrentLanguage("en");
  static_cast<void>(du::Tracer::TakeEntries());
  std::string error;
  EXPECT_TRUE(ComponentLoader::Load(ComponentPath(), error)) << error;

  scene_ = AddScene(false);
  view_ = du::DynamicCast<zrk::ShapeView>(scene_->GetView(0));
  tree_ = zrk::MakeObject<zrk::illustration::SbomTree>();
  if (options.withTree) scene_->SetSbomTree(tree_);
  structure_ = std::make_unique<StructureBuilder>(scene_, tree_);
  if (options.withItemList) {
    itemList_ = zritemlist::ItemList::CreateItemListForScene(scene_);
    items_ = itemList_->GetZrkItemList();
  }
  if (!options.withEngine) return;
  CalloutEngineMgr::Instance().CreateEngineForScene(scene_);
  engine_ = EngineOf(scene_);
}

SceneFixture::~SceneFixture() {
  for (const auto& scene : furtherScenes_) scene->Destroy();
  RunTasks();
  engine_.Reset();
  items_.Reset();
  itemList_.Reset();
  structure_.reset();
  view_.Reset();
  tree_.Reset();
  scene_.Reset();
  furtherScenes_.clear();
  world_->Shutdown();
  zrk::World::SetWorld(nullptr);
  world_.Reset();
  zrkapp::illustration::OrreryApp::SetOrreryApp(nullptr);
  application_.Reset();
  zrk::illustration::SetRunningFoliant(false);
  EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), liveBefore_) << "the test left counted objects behind";
}

du::SmartPtr<Illustration3dScene> SceneFixture::AddScene(bool withEngine) {
  auto scene = zrk::MakeObject<Illustration3dScene>();
  scene->AddView(zrk::MakeObject<zrk::illustration::Illustration3dView>());
  furtherScenes_.push_back(scene);
  if (withEngine) CalloutEngineMgr::Instance().CreateEngineForScene(scene);
  return scene;
}

void SceneFixture::RunTasks() {
  const auto pool = world_->GetTaskPool();
  if (manualTasks_) {
    while (pool->RunPending() != 0) {
    }
  } else {
    pool->WaitIdle();
  }
}

void SceneFixture::CloseScene() {
  scene_->Destroy();
  RunTasks();
}

CalloutPtr SceneFixture::MakeCallout(const TemplatePtr& callouttemplate, const Part& part, std::uint32_t itemId) const {
  auto callout = zrk::MakeObject<zrannotations::Callout>();
  callout->Initialize(callouttemplate, part.shape);
  callout->SetItemId(itemId);
  return callout;
}

CalloutPtr SceneFixture::AddCallout(const TemplatePtr& callouttemplate, const Part& part, std::uint32_t itemId) {
  auto callout = MakeCallout(callouttemplate, part, itemId);
  Add(callout);
  return callout;
}

void SceneFixture::AddLeader(const CalloutPtr& callout, const Part& part) const {
  dg::DPoint3D anchor;
  callout->CalculateAnchor(part.shape, anchor);
  callout->ConnectLeader(callout->CreateCalloutLeader(anchor, part.shape));
}

void SceneFixture::AddAssemblyLeader(const CalloutPtr& callout, const Part& assembly) const {
  zrannotations::Callout::ShapeSet shapes;
  zrannotations::GetShapeInstancesForAssembly(scene_, assembly.sbom, shapes);
  callout->ConnectLeader(callout->CreateCalloutLeader(dg::DPoint3D(), callout->CalculateAssemblyRoughLocation(shapes),
                                                      assembly.sbom, shapes));
}

CombinedPtr SceneFixture::MakeCombined(const std::vector<CalloutPtr>& members) const {
  auto combined = zrk::MakeObject<zrannotations::CombinedCallout>();
  if (!members.empty())
    combined->Initialize(members.front()->GetDefinition(), members.front()->GetShapeInstanceAtPos(0));
  for (const auto& member : members) combined->AddMember(member);
  return combined;
}

std::set<CalloutPtr> SceneFixture::CalloutsOn(const Part& part) const {
  std::set<CalloutPtr> callouts;
  engine_->GetCalloutSetForSbomInstance(part.sbom, callouts);
  return callouts;
}

// Every observed callout has its colours refreshed, so this needs no access to the engine's fields.
bool SceneFixture::IsObserved(const CalloutPtr& callout) const {
  const unsigned before = callout->GetRefreshColorsCount();
  engine_->OnPaletteColorChanged();
  return callout->GetRefreshColorsCount() != before;
}

}  // namespace zrtest
