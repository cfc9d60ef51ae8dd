#include <zrk/World.h>

#include <algorithm>

#include <du/Localizer.h>
#include <du/TaskPool.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/MakeObject.h>
#include <zrk/MultiRootContainer.h>
#include <zrk/Preferences.h>
#include <zrk/Scene.h>
#include <zrk/UndoHistory.h>
#include <zrk/WorldObserver.h>
#include <zrk/illustration/ComponentLoader.h>

namespace zrk {

namespace {

struct ProcessWorld {
  dp::Mutex mutex;
  du::SmartPtr<World> world ZR_GUARDED_BY(mutex);
};

ProcessWorld& GetProcessWorld() {
  static ProcessWorld* instance = new ProcessWorld;
  return *instance;
}

}  // namespace

World::World()
    : hostThread_(std::this_thread::get_id()),
      taskPool_(new du::TaskPool),
      annoSetTable_(MakeObject<AnnoSetTable>()),
      preferences_(new Preferences) {}

World::~World() {
  Shutdown();
}

du::SmartPtr<World> World::GetWorld() {
  ProcessWorld& process = GetProcessWorld();
  const dp::MutexGuard guard(process.mutex);
  return process.world;
}

void World::SetWorld(const du::SmartPtr<World>& world) {
  // The previous world may end here: after the lock is free again, since its end asks for the process's world.
  du::SmartPtr<World> previous = world;
  ProcessWorld& process = GetProcessWorld();
  const dp::MutexGuard guard(process.mutex);
  process.world.Swap(previous);
}

du::SmartPtr<du::TaskPool> World::GetTaskPool() const {
  const dp::MutexGuard guard(mutex_);
  return taskPool_;
}

du::SmartPtr<MultiRootContainer> World::GetMRC() const {
  const dp::MutexGuard guard(mutex_);
  return container_;
}

du::SmartPtr<AnnoSetTable> World::GetAnnoSetTable() const {
  return annoSetTable_;
}

du::SmartPtr<Preferences> World::GetPreferences() const {
  const dp::MutexGuard guard(mutex_);
  return preferences_;
}

void World::SetTaskPool(const du::SmartPtr<du::TaskPool>& pool) {
  du::SmartPtr<du::TaskPool> previous = pool;
  const dp::MutexGuard guard(mutex_);
  taskPool_.Swap(previous);
}

void World::SetMRC(const du::SmartPtr<MultiRootContainer>& container) {
  du::SmartPtr<MultiRootContainer> previous = container;
  const dp::MutexGuard guard(mutex_);
  container_.Swap(previous);
}

void World::SetPreferences(const du::SmartPtr<Preferences>& preferences) {
  du::SmartPtr<Preferences> previous = preferences;
  const dp::MutexGuard guard(mutex_);
  preferences_.Swap(previous);
}

void World::RegisterObserver(const du::SmartPtr<WorldObserver>& observer, bool fromAnyThread) {
  if (!observer) return;
  const dp::MutexGuard guard(mutex_);
  const bool isKnown = std::any_of(observers_.begin(), observers_.end(),
                                   [&observer](const auto& entry) { return entry.first == observer; });
  if (!isKnown) observers_.emplace_back(observer, fromAnyThread);
}

void World::DeregisterObserver(const du::SmartPtr<WorldObserver>& observer) {
  du::SmartPtr<WorldObserver> released;
  const dp::MutexGuard guard(mutex_);
  const auto found = std::find_if(observers_.begin(), observers_.end(),
                                  [&observer](const auto& entry) { return entry.first == observer; });
  if (found == observers_.end()) return;
  released.Swap(found->first);
  observers_.erase(found);
}

std::size_t World::GetObserverCount() const {
  const dp::MutexGuard guard(mutex_);
  return observers_.size();
}

void World::Notify(const std::function<void(WorldObserver&)>& notification) const {
  std::vector<std::pair<du::SmartPtr<WorldObserver>, bool>> receivers;
  {
    const dp::MutexGuard guard(mutex_);
    receivers = observers_;
  }
  const bool isHostThread = std::this_thread::get_id() == hostThread_;
  for (const auto& [observer, fromAnyThread] : receivers) {
    if (fromAnyThread || isHostThread) notification(*observer);
  }
}

void World::ChangeLanguage(const std::string& language) {
  du::Localizer::SetCurrentLanguage(language);
  Notify([](WorldObserver& observer) { observer.OnLanguageChanged(); });
}

void World::AnnounceScene(const du::SmartPtr<Scene>& scene) {
  if (!scene) return;
  Notify([&scene](WorldObserver& observer) { observer.OnSceneAdded(scene); });
}

void World::NotifyAnnoSetTableChanged() {
  Notify([](WorldObserver& observer) { observer.OnAnnoSetTableChanged(); });
}

void World::Shutdown() {
  {
    const dp::MutexGuard guard(mutex_);
    if (isShutDown_) return;
    isShutDown_ = true;
  }
  Notify([](WorldObserver& observer) { observer.OnWorldDestroy(); });
  if (const du::SmartPtr<du::TaskPool> pool = GetTaskPool()) pool->Shutdown();
  UndoHistory::Clear();
  illustration::ComponentLoader::Terminate();
}

}  // namespace zrk
