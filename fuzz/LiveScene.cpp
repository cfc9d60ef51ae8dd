#include "LiveScene.h"

#include <dlfcn.h>

#include <iostream>

#include <du/Localizer.h>
#include <du/TaskPool.h>
#include <du/Tracer.h>
#include <zrannotations/CalloutTemplates.h>
#include <zrcallouts/Functions.h>
#include <zrk/AnnoSet.h>
#include <zrk/CurrentOperation.h>
#include <zrk/MakeObject.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/ComponentLoader.h>

namespace zrfuzz {

using zritemlist::ItemList;
using zrk::MakeObject;
using zrk::illustration::CalloutEngineMgr;
using zrk::illustration::Illustration3dScene;
using zrk::illustration::Illustration3dView;
using zrtest::TemplateBuilder;

namespace {

void LoadComponent() {
  Dl_info info{};
  std::string error = "not found";
  const bool found = dladdr(reinterpret_cast<void*>(&zrcallouts::GetCalloutsEngineForScene), &info) != 0;
  if (found && zrk::illustration::ComponentLoader::Load(info.dli_fname, error)) return;
  std::cerr << "the component cannot be loaded: " << error << std::endl;
  std::abort();
}

CalloutPtr MakeCallout(const TemplatePtr& callouttemplate, const Part& part) {
  auto callout = MakeObject<zrannotations::Callout>();
  callout->Initialize(callouttemplate, part.shape);
  return callout;
}

template <class Kind>
std::vector<du::SmartPtr<Kind>> AnnotationsOf(const zrk::AnnoSet& set) {
  std::vector<du::SmartPtr<Kind>> found;
  for (const auto& annotation : set.GetAnnotations()) {
    if (auto wanted = du::DynamicCast<Kind>(annotation)) found.push_back(std::move(wanted));
  }
  return found;
}

template <class Kind>
du::SmartPtr<Kind> AnnotationAt(const Illustration3dScene& scene, unsigned choice) {
  const auto found = AnnotationsOf<Kind>(*scene.GetAnnoSet());
  return found.empty() ? du::SmartPtr<Kind>() : found[choice % found.size()];
}

}  // namespace

LiveScene::LiveScene() {
  zrk::Kernel::SetKernel(&kernel);
  world = MakeObject<zrk::World>();
  zrk::World::SetWorld(world);
  world->GetTaskPool()->SetManual(true);
  du::Localizer::SetCurrentLanguage("en");
  LoadComponent();
  MakeScene();
  MakeParts();
  MakeTemplates();
  MakeForeignScene();
  ConnectItemList();
  MakeEngine();
}

LiveScene::~LiveScene() {
  ItemList::SetListClearedHook({});
  ItemList::SetItemRemovalHook({});
  scene->Destroy();
  foreignScene->Destroy();
  sheet->Destroy();
  RunTasks();
  world->Shutdown();
  zrk::World::SetWorld(nullptr);
  zrannotations::ClearCalloutTemplates();
  static_cast<void>(du::Tracer::TakeEntries());
}

void LiveScene::MakeScene() {
  scene = MakeObject<Illustration3dScene>();
  view = MakeObject<Illustration3dView>();
  scene->AddView(view);
  pickService = MakeObject<zrtest::HeldPicks>();
  view->SetPickService(pickService);
  tree = MakeObject<zrk::illustration::SbomTree>();
  scene->SetSbomTree(tree);
  itemList = ItemList::CreateItemListForScene(scene);
  items = itemList->GetZrkItemList();
  sheet = MakeObject<Sheet>();
  sheetView = MakeObject<zrk::illustration2d::View2D>();
  sheet->AddView(sheetView);
  ItemList::ShareItemList(scene, sheet);  // keeps the list when the engine takes it from the scene
}

void LiveScene::MakeParts() {
  zrtest::StructureBuilder builder(scene, tree);
  const Part root = builder.Root();
  double x = 0;
  for (const char* name : {"bolt", "bolt", "nut", "nut", "washer", "pin"}) {
    parts.push_back(builder.AddPart(root, name, {x += 4, 0, 0}));
  }
  const Part frame = builder.AddAssembly(root, "frame");
  parts.push_back(frame);
  for (const char* name : {"beam", "beam"}) parts.push_back(builder.AddPart(frame, name, {x += 4, 0, 0}));
  const Part weld = builder.AddWeld(root, "weld");
  parts.push_back(weld);
  for (const char* name : {"plate", "rib"}) parts.push_back(builder.AddPart(weld, name, {x += 4, 0, 0}));
  parts.push_back(builder.AddAssembly(root, "stub"));
}

void LiveScene::MakeTemplates() {
  templates = {TemplateBuilder().Token("zrITM").Build(),
               TemplateBuilder().Token("zrQTY").Literal("x ").Token("zrITM").Build(),
               TemplateBuilder().Literal("Note").Build(),
               TemplateBuilder().Literal("Part ").Property("", "name").Build(),
               TemplateBuilder().Literal("**").Token("zrTAG").Literal("** ").Property("", "name").Markdown().Build(),
               TemplateBuilder().Build()};
  for (std::size_t i = 0; i < templates.size(); ++i) {
    templates[i]->SetId("template-" + std::to_string(i));
    zrannotations::AddCalloutTemplate(templates[i]);
  }
}

void LiveScene::MakeForeignScene() {
  foreignScene = MakeObject<Illustration3dScene>();
  foreignScene->AddView(MakeObject<Illustration3dView>());
  const auto foreignTree = MakeObject<zrk::illustration::SbomTree>();
  foreignScene->SetSbomTree(foreignTree);
  zrtest::StructureBuilder builder(foreignScene, foreignTree);
  foreignPart = builder.AddPart(builder.Root(), "bolt");
  const auto note = TemplateBuilder().Literal("elsewhere").Build();
  foreignCallout = MakeCallout(note, foreignPart);
  foreignScene->GetAnnoSet()->AddAnnotationToSet(foreignCallout, nullptr);
  foreignInset = MakeObject<zrannotations::Inset>();
  foreignScene->GetAnnoSet()->AddAnnotationToSet(foreignInset, nullptr);
  foreignItems = ItemList::CreateItemListForScene(foreignScene)->GetZrkItemList();
  CalloutEngineMgr::Instance().CreateEngineForScene(foreignScene);
  looseCallout = MakeCallout(note, parts.front());
}

void LiveScene::ConnectItemList() {
  ItemList::SetListClearedHook([this](const auto& of, const auto& operation) {
    if (of == du::SmartPtr<zrk::Scene>(scene)) engine->OnListCleared(operation);
  });
  ItemList::SetItemRemovalHook([this](const auto& of, unsigned item, const auto& operation) {
    if (of == du::SmartPtr<zrk::Scene>(scene)) engine->OnItemRemoved(item, operation);
  });
}

CalloutPtr LiveScene::CalloutAt(unsigned choice) const {
  return AnnotationAt<zrannotations::Callout>(*scene, choice);
}

InsetPtr LiveScene::InsetAt(unsigned choice) const {
  return AnnotationAt<zrannotations::Inset>(*scene, choice);
}

du::SmartPtr<zrannotations::SymbolAnnotation> LiveScene::SymbolAt(unsigned choice) const {
  return AnnotationAt<zrannotations::SymbolAnnotation>(*scene, choice);
}

unsigned LiveScene::ItemAt(unsigned choice) const {
  const auto ids = items->GetItemIds();
  return ids.empty() ? 0 : ids[choice % ids.size()];
}

std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>> LiveScene::Notes() const {
  std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>> notes;
  for (const auto& annotation : sheet->GetAnnotations2D()) {
    if (auto note = du::DynamicCast<zrk::illustration2d::Callout2D>(annotation)) notes.push_back(std::move(note));
  }
  return notes;
}

zrtest::WatchedScene LiveScene::WatchedElsewhere() const {
  return {foreignScene, foreignScene->GetSbomTree(), foreignItems, zrcallouts::GetCalloutsEngineForScene(foreignScene)};
}

void LiveScene::Edit(const std::string& name, const std::function<void(const OperationPtr&)>& edit) {
  const auto operation = MakeObject<zrk::Operation>(name, scene, true);
  {
    const zrk::CurrentOperation current(operation);
    edit(operation);
  }
  if (operation->GetStepCount() != 0) zrk::RecordOperation(operation);
}

void LiveScene::ClearHistory() {
  zrk::UndoHistory::Clear(scene);
  exactHistory = isPredictable;
}

void LiveScene::RunTasks() {
  while (world->GetTaskPool()->RunPending() != 0) {
  }
}

void LiveScene::CollectPicks() {
  for (auto& pick : pickService->Take()) picks.push_back(std::move(pick));
}

void LiveScene::DestroyEngine() {
  CollectPicks();
  engine->Destroy();
  std::move(picks.begin(), picks.end(), std::back_inserter(stalePicks));
  picks.clear();
  ForgetMarks();
}

// The release of what the former engine observed is through by then: it would take the new one's observers off. And
// steps in the history would file callouts with the former engine.
void LiveScene::MakeEngine() {
  RunTasks();
  ClearHistory();
  ItemList::ShareItemList(sheet, scene);
  CalloutEngineMgr::Instance().CreateEngineForScene(scene);
  engine = zrcallouts::GetCalloutsEngineForScene(scene);
  engine->SetTemplate(templates.front());
}

void LiveScene::ForgetMarks() {
  for (const unsigned item : items->GetItemIds()) unsureMarks.insert(item);
}

}  // namespace zrfuzz
