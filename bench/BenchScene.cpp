#include "BenchScene.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include <du/TaskPool.h>
#include <zrcallouts/Functions.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/ComponentLoader.h>
#include <zrk/illustration/Illustration3dView.h>

namespace zrbench {

namespace {

void LoadComponent() {
  Dl_info info{};
  std::string error = "its library was not found";
  if (dladdr(reinterpret_cast<void*>(&zrcallouts::GetCalloutsEngineForScene), &info) != 0 &&
      zrk::illustration::ComponentLoader::Load(info.dli_fname, error))
    return;
  std::fprintf(stderr, "zrbench: cannot load the component: %s\n", error.c_str());
  std::exit(2);
}

}  // namespace

void LargeSizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(1000, 100000)->Complexity()->Unit(benchmark::kMillisecond);
}

BenchScene::BenchScene() {
  zrk::Kernel::SetKernel(&kernel);
  world = zrk::MakeObject<zrk::World>();
  zrk::World::SetWorld(world);
  world->GetTaskPool()->SetManual(true);
  LoadComponent();
  scene = zrk::MakeObject<zrk::illustration::Illustration3dScene>();
  scene->AddView(zrk::MakeObject<zrk::illustration::Illustration3dView>());
  view = du::DynamicCast<zrk::ShapeView>(scene->GetView(0));
  tree = zrk::MakeObject<zrk::illustration::SbomTree>();
  scene->SetSbomTree(tree);
  structure_ = std::make_unique<zrtest::StructureBuilder>(scene, tree);
  itemList = zritemlist::ItemList::CreateItemListForScene(scene);
  zrk::illustration::CalloutEngineMgr::Instance().CreateEngineForScene(scene);
  engine = zrcallouts::GetCalloutsEngineForScene(scene);
  engine->SetTemplate(zrtest::NumberTemplate());
}

BenchScene::~BenchScene() {
  scene->Destroy();
  RunTasks();
  world->Shutdown();
  zrk::World::SetWorld(nullptr);
}

const std::vector<zrtest::Part>& BenchScene::AddParts(std::size_t count) {
  const auto root = structure_->Root();
  for (std::size_t i = 0; i < count; ++i) {
    const dg::DPoint3D at(static_cast<double>(i % 100) * 2, static_cast<double>(i / 100) * 2, 0);
    parts_.push_back(structure_->AddPart(root, "part " + std::to_string(i / 10), at));
  }
  return parts_;
}

std::vector<CalloutPtr> BenchScene::MakeCallouts(const zrtest::TemplatePtr& callouttemplate, bool withItems) {
  std::vector<CalloutPtr> callouts;
  for (const auto& part : parts_) {
    auto callout = zrk::MakeObject<zrannotations::Callout>();
    callout->Initialize(callouttemplate, part.shape);
    if (withItems) callout->SetItemId(itemList->AddInstance(part.sbom, nullptr, false, {}));
    callouts.push_back(callout);
  }
  return callouts;
}

void BenchScene::AddToScene(const std::vector<CalloutPtr>& callouts) const {
  const auto annoSet = scene->GetAnnoSet();
  for (const auto& callout : callouts) annoSet->AddAnnotationToSet(callout, nullptr);
}

void BenchScene::RunTasks() const {
  while (world->GetTaskPool()->RunPending() != 0) {
  }
}

}  // namespace zrbench
