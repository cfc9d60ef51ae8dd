// The engine object: construction, binding to its scene, and the end.
#include "zrcallouts/Callouts.h"

#include <dp/ReadWriteLock.h>
#include <du/TaskPool.h>
#include <zrannotations/Callout.h>
#include <zrannotations/Inset.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/Instance.h>
#include <zrk/Kernel.h>
#include <zrk/ShapeView.h>
#include <zrk/World.h>
#include <zrk/illustration/Application.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrkapp/illustration/OrreryApp.h>

#include "engine/AnnoSetTableObserver.h"
#include "engine/EngineLink.h"
#include "engine/InsetObserver.h"
#include "engine/ItemIndex.h"
#include "engine/ItemsListObserver.h"
#include "engine/OnFailure.h"
#include "engine/OrreryAppObserver.h"
#include "engine/TreeObserver.h"
#include "engine/WorldObserver.h"
#include "entry/DestroyCalloutsTask.h"

using zrk::illustration::Illustration3dScene;
using zrkapp::illustration::OrreryApp;

namespace zrcallouts {

Callouts::Callouts() : itemIndex_(new ItemIndex), link_(new EngineLink(this)) {}

Callouts::Callouts(const du::SmartPtr<zrk::ShapeScene>& scene) : Callouts() {
  Callouts::Initialize(scene);
}

// An engine dropped without Destroy must not leave back pointers behind.
Callouts::~Callouts() {
  link_->Cut();
  Callouts::UnregisterObservers();
}

// An engine that is only half bound would be notified by what it does not know, so it is not bound at all then.
void Callouts::Initialize(const du::SmartPtr<zrk::ShapeScene>& scene) {
  const OnFailure unbind([this] { UnregisterObservers(); });
  zrk::illustration::Callouts::Initialize(scene);
  AttachItemsListObserver(scene);
  AttachWorldObserver();
  AttachApplicationObserver();
  AttachTreeObserver(scene);
  AttachAnnoSetTableObserver();
}

void Callouts::AttachItemsListObserver(const du::SmartPtr<zrk::ShapeScene>& scene) {
  if (!du::DynamicCast<Illustration3dScene>(scene)) return;
  itemList_ = zritemlist::ItemList::GetItemListForScene(scene);
  if (!itemList_) return;
  itemsListObserver_ = new ItemsListObserver(this);
  itemsListObserver_->ManageObject(zrk::Kernel::GetKernel());
  if (const auto items = itemList_->GetZrkItemList()) items->RegisterObserver(itemsListObserver_);
}

void Callouts::AttachWorldObserver() {
  worldObserver_ = new WorldObserver(this);
  const auto world = zrk::World::GetWorld();
  if (!world) return;
  worldObserver_->ManageObject(zrk::Kernel::GetKernel());
  world->RegisterObserver(worldObserver_, true);
}

void Callouts::AttachApplicationObserver() {
  if (!zrk::illustration::IsRunningFoliant()) return;
  applicationObserver_ = new OrreryAppObserver(this);
  applicationObserver_->ManageObject(zrk::Kernel::GetKernel());
  if (const auto application = OrreryApp::GetOrreryApp()) application->RegisterObserver(applicationObserver_);
}

void Callouts::AttachTreeObserver(const du::SmartPtr<zrk::ShapeScene>& scene) {
  treeObserver_ = new TreeObserver(this);
  const auto illustrationScene = du::DynamicCast<Illustration3dScene>(scene);
  auto tree = illustrationScene ? illustrationScene->GetSbomTree() : nullptr;
  if (!tree && zrk::illustration::IsRunningFoliant()) {
    if (const auto application = OrreryApp::GetOrreryApp()) tree = application->GetSbomTree();
  }
  if (!tree) return;
  treeObserver_->Attach(tree);
  treeObserver_->ManageObject(zrk::Kernel::GetKernel());
  tree->RegisterObserver(treeObserver_, false);
}

void Callouts::AttachAnnoSetTableObserver() {
  if (!zrk::illustration::IsRunningFoliant()) return;
  annoSetTableObserver_ = new AnnoSetTableObserver(this);
  annoSetTableObserver_->ManageObject(zrk::Kernel::GetKernel());
  const auto world = zrk::World::GetWorld();
  const auto table = world ? world->GetAnnoSetTable() : nullptr;
  if (table) table->RegisterObserver(annoSetTableObserver_);
}

void Callouts::InitializeShapeViewObserver() {
  zrk::illustration::Callouts::InitializeShapeViewObserver();
  const auto scene = GetScene();
  if (!scene) return;
  SetBackgroundColor(du::DynamicCast<zrk::ShapeView>(scene->GetView(0)));
}

// The host's containers never wait for a notification that is under way, so taking observers off with the write lock
// held cannot deadlock against a notification that wants the engine's lock.
void Callouts::UnregisterObservers() {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  const auto world = zrk::World::GetWorld();
  if (itemsListObserver_) {
    itemsListObserver_->ClearEngine();
    const auto items = itemList_ ? itemList_->GetZrkItemList() : nullptr;
    if (items) items->UnregisterObserver(itemsListObserver_);
    itemsListObserver_.Reset();
  }
  if (worldObserver_) {
    worldObserver_->ClearEngine();
    if (world) world->DeregisterObserver(worldObserver_);
    worldObserver_.Reset();
  }
  for (const auto& [inset, observer] : insetObservers_) {
    if (!inset || !observer) continue;
    observer->ClearEngine();
    inset->UnregisterObserver(observer);
  }
  if (applicationObserver_) {
    applicationObserver_->ClearEngine();
    if (const auto application = OrreryApp::GetOrreryApp()) application->UnregisterObserver(applicationObserver_);
    applicationObserver_.Reset();
  }
  if (treeObserver_) {
    treeObserver_->ClearEngine();
    if (const auto tree = treeObserver_->GetTree()) tree->UnregisterObserver(treeObserver_);
    treeObserver_.Reset();
  }
  if (annoSetTableObserver_) {
    annoSetTableObserver_->ClearEngine();
    const auto table = world ? world->GetAnnoSetTable() : nullptr;
    if (table) table->UnregisterObserver(annoSetTableObserver_);
    annoSetTableObserver_.Reset();
  }
  zrk::illustration::Callouts::UnregisterObservers();
}

void Callouts::Destroy() {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  const du::SmartPtr<DestroyCalloutsTask> task(new DestroyCalloutsTask);  // first, since nothing after it can fail
  UnregisterObservers();
  link_->Cut();
  const auto scene = GetScene();
  if (du::DynamicCast<Illustration3dScene>(scene)) {
    zritemlist::ItemList::RemoveItemListForScene(scene);
    itemList_.Reset();
  }
  task->Take(insetTable_, callouts_);
  const auto world = zrk::World::GetWorld();
  const auto pool = world ? world->GetTaskPool() : nullptr;
  if (pool) pool->InsertTask(task);
  callouts_.clear();
  itemIndex_->Clear();
  insetTable_.clear();
  idMap_.clear();
  insetObservers_.clear();
  // The symbol-annotation map stays filled; it goes with the engine.
  zrk::illustration::Callouts::Destroy();
}

bool Callouts::IsDestroyed() const {
  return link_->IsCut();
}

void Callouts::PreferencesChanged() {}

}  // namespace zrcallouts
