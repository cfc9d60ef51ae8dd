// The generator object and its run: set-up, category iteration, the passes.
#include "zrcallouts/CalloutGenerator.h"

#include <dp/ReadWriteLock.h>
#include <du/TaskPool.h>
#include <zrannotations/Callout.h>
#include <zritemlist/ItemList.h>
#include <zrk/AsyncEvent.h>
#include <zrk/ComponentNode.h>
#include <zrk/Operation.h>
#include <zrk/ReadWriteLock.h>
#include <zrk/RecordOperation.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>
#include <zrk/World.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>
#include <zrk/illustration/TAnnotation.h>

#include "engine/OnFailure.h"
#include "generator/CreateCalloutsTask.h"
#include "generator/PassProgress.h"
#include "labels/Catalogue.h"
#include "layout/Layout.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

namespace {

const zrk::ClassType kClassType("CalloutGenerator", nullptr);

}  // namespace

CalloutGenerator::CalloutGenerator(du::SmartPtr<Callouts> engine)
    : ObjectWithRWLock(GetRWLock()),
      engine_(engine),
      plainCurrent_(plainCategories_.end()),
      propertyCurrent_(propertyCategories_.end()),
      itemCurrent_(itemCategories_.end()) {
  if (!engine_) return;
  scene_ = engine_->GetScene();
  if (scene_) view_ = scene_->GetView(0);
  const dp::ReadWriteLock::ReadGuard guard(engine_->GetReadWriteLock());  // the scene may close on another thread
  itemList_ = engine_->GetItemsList();
}

CalloutGenerator::~CalloutGenerator() = default;

const zrk::ClassType& CalloutGenerator::GetClassType() const {
  return kClassType;
}

du::SmartPtr<zrk::ReadWriteLock> CalloutGenerator::GetRWLock() {
  static const du::SmartPtr<zrk::ReadWriteLock> lock(new zrk::ReadWriteLock);
  return lock;
}

void CalloutGenerator::CreateCallouts(const du::SmartPtr<Callouts>& engine, Selection&& selection,
                                      const du::SmartPtr<zrk::AsyncEvent>& event) {
  const du::SmartPtr<du::Task> task(new CreateCalloutsTask(engine, std::move(selection), event));
  selection.clear();
  const auto world = zrk::World::GetWorld();
  const auto pool = world ? world->GetTaskPool() : nullptr;
  const bool inserted = pool && pool->InsertTask(task);
  if (!inserted && event) event->Complete();  // nobody else would, and the caller may be waiting
}

du::SmartPtr<zrk::Operation> CalloutGenerator::NewOperation() const {
  return du::SmartPtr<zrk::Operation>(new zrk::Operation(CatalogueText(kCreateCalloutsMessage), scene_, true));
}

void CalloutGenerator::AddOnSelected(const Selection& selection, const du::SmartPtr<zrk::AsyncEvent>& event) {
  const auto operation = NewOperation();
  const OnFailure takeBack([&] { TakeBack(operation); });
  InitializeSelected(selection, operation);
  if (variantsCount_ == 0) return;
  const PassProgress progress(event, static_cast<double>(selection.size()) * variantsCount_);
  const bool completed = ForEachPass(selection, progress, [this](const InstanceSet& runSet) {
    if (!engine_->GetScene()) return false;  // the scene was closed under the run
    AddOnSelectedCategory(runSet);
    return true;
  });
  if (!completed) return;
  PerformLayout();
  ShowCallouts(created_, operation);
  if (operation) zrk::RecordOperation(operation);
}

void CalloutGenerator::InitializeSelected(const Selection& selection, const du::SmartPtr<zrk::Operation>& operation) {
  if (!engine_) return;
  if (const auto callouttemplate = engine_->GetTemplate()) {
    needsItemList_ = callouttemplate->RequiresItemList();
    if (!needsItemList_) {
      const auto current = engine_->GetTemplate();
      needsProperty_ = current && current->RequiresPropertyVisitor();
      if (!needsProperty_) plain_ = true;
    }
    variantsCount_ = ComputeNumberOfVariants(selection, operation);
  }
  InitCategoryIterators();
}

// In item-list mode the answer is false although the iterator is set: callers of that mode never ask for it.
bool CalloutGenerator::InitCategoryIterators() {
  if (plain_) {
    plainCurrent_ = plainCategories_.begin();
    propertyCurrent_ = propertyCategories_.begin();
    return true;
  }
  if (needsProperty_) {
    propertyCurrent_ = propertyCategories_.begin();
    return true;
  }
  if (needsItemList_) itemCurrent_ = itemCategories_.begin();
  return false;
}

namespace {

template <class Iterator, class Container>
bool Advance(Iterator& current, const Container& container) {
  if (current == container.end()) return false;
  ++current;
  return true;
}

}  // namespace

bool CalloutGenerator::NextCategory() {
  if (plain_) return Advance(plainCurrent_, plainCategories_) || Advance(propertyCurrent_, propertyCategories_);
  if (needsProperty_) return Advance(propertyCurrent_, propertyCategories_);
  return needsItemList_ && Advance(itemCurrent_, itemCategories_);
}

bool CalloutGenerator::CompletedCategoryIterators() {
  const bool propertiesDone = propertyCurrent_ == propertyCategories_.end();
  if (plain_) return plainCurrent_ == plainCategories_.end() && propertiesDone;
  if (needsProperty_) return propertiesDone;
  return !needsItemList_ || itemCurrent_ == itemCategories_.end();
}

std::uint32_t CalloutGenerator::CurrentItemId() const {
  return itemCurrent_ == itemCategories_.end() ? 0 : *itemCurrent_;
}

void CalloutGenerator::PerformLayout() {
  const auto view = du::DynamicCast<zrk::ShapeView>(view_);
  if (view && engine_) Layout(view, engine_).Place(created_);
}

}  // namespace zrcallouts
