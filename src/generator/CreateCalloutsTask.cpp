#include "generator/CreateCalloutsTask.h"

#include <dp/ReadWriteLock.h>
#include <zritemlist/ItemList.h>
#include <zrk/AsyncEvent.h>
#include <zrk/Observable.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "leaders/GenerationScope.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

namespace {

class CompletionGuard final {
public:
  explicit CompletionGuard(const du::SmartPtr<zrk::AsyncEvent>& event) : event_(event) {}
  ~CompletionGuard() {
    if (event_) event_->Complete();
  }
  CompletionGuard(const CompletionGuard&) = delete;
  CompletionGuard& operator=(const CompletionGuard&) = delete;

private:
  const du::SmartPtr<zrk::AsyncEvent>& event_;
};

// The scene may close meanwhile, on another thread.
du::SmartPtr<zritemlist::ItemList> ListOf(const Callouts& engine) {
  const dp::ReadWriteLock::ReadGuard guard(engine.GetReadWriteLock());
  return engine.GetItemsList();
}

}  // namespace

CreateCalloutsTask::CreateCalloutsTask(const du::SmartPtr<Callouts>& engine, CalloutGenerator::Selection&& selection,
                                       const du::SmartPtr<zrk::AsyncEvent>& event)
    : Task(0), engine_(engine), selection_(std::move(selection)), event_(event) {}

CreateCalloutsTask::~CreateCalloutsTask() = default;

// Order of the ends: the update group closes, so that observers of the item list see the run as one batch; then the
// event completes; then the generator goes.
void CreateCalloutsTask::Run() {
  du::SmartPtr<CalloutGenerator> generator;
  const CompletionGuard completion(event_);
  if (!engine_) return;
  generator = new CalloutGenerator(engine_);
  if (!generator) return;
  const GenerationScope generation(engine_);  // the item list tells its observers when the group closes, still in here
  const auto itemList = ListOf(*engine_);
  const zrk::Observable::UpdateGroup group(itemList ? itemList->GetZrkItemList() : nullptr);
  generator->AddOnSelected(selection_, event_);
}

}  // namespace zrcallouts
