#include <zrk/illustration/StarterScene.h>

#include <cstdio>

#include <dg/Location.h>
#include <du/Localizer.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/ShapeInstance.h>
#include <zrk/World.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/ComponentLoader.h>
#include <zrk/illustration/Illustration3dView.h>
#include <zrk/illustration/SbomTree.h>

namespace zrk::illustration {

StarterScene::StarterScene(const std::string& assembly) {
  World::SetWorld(MakeObject<World>());
  scene_ = MakeObject<Illustration3dScene>();
  scene_->SetSbomTree(MakeObject<SbomTree>());
  scene_->AddView(MakeObject<Illustration3dView>());
  zritemlist::ItemList::CreateItemListForScene(scene_);
  assembly_ = MakeObject<Instance>(MakeObject<ComponentNode>(assembly), nullptr, assembly);
  root_ = scene_->GetSbomTree()->CreateRoot(assembly, assembly_);
}

StarterScene::~StarterScene() {
  scene_->Destroy();
  World::GetWorld()->Shutdown();
}

du::SmartPtr<SbomInstance> StarterScene::AddPart(const std::string& name, const dg::DBox& box, const dg::DPoint3D& at) {
  Kind& kind = kinds_[name];
  if (!kind.component) kind = {MakeObject<ComponentNode>(name), MakeObject<Shape>(name), box};
  const auto design = MakeObject<Instance>(kind.component, assembly_, name);
  parts_.push_back(scene_->GetSbomTree()->AddInstance(root_, name, design));
  scene_->AddShapeInstance(
      MakeObject<ShapeInstance>(design, kind.shape, kind.box, dg::Location(dg::FMat33::IDENTITY, at)));
  return parts_.back();
}

du::SmartPtr<Callouts> StarterScene::LoadCallouts(const std::string& library) {
  std::string error;
  if (ComponentLoader::Load(library, error)) return CalloutEngineMgr::Instance().CreateEngineForScene(scene_);
  std::fprintf(stderr, "%s\n", error.c_str());
  return {};
}

std::vector<du::SmartPtr<SbomInstanceSelectionItem>> StarterScene::SelectAll() const {
  std::vector<du::SmartPtr<SbomInstanceSelectionItem>> selection;
  for (const auto& part : parts_) selection.push_back(MakeObject<SbomInstanceSelectionItem>(part));
  return selection;
}

std::vector<du::SmartPtr<zrannotations::Callout>> StarterScene::GetCallouts() const {
  std::vector<du::SmartPtr<zrannotations::Callout>> callouts;
  for (const auto& annotation : scene_->GetAnnoSet()->GetAnnotations()) {
    if (auto callout = du::DynamicCast<zrannotations::Callout>(annotation)) callouts.push_back(std::move(callout));
  }
  return callouts;
}

}  // namespace zrk::illustration
