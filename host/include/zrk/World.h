#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>

namespace du {
class TaskPool;
}

namespace zrk {

class AnnoSetTable;
class MultiRootContainer;
class Preferences;
class Scene;
class WorldObserver;

/// What everything of a process shares: task pool, annotation-set table, preferences, document container. A program
/// makes one, announces it with SetWorld and ends it with Shutdown. [any-thread]
class ZR_HOST_API World : public Object {
public:
  /// With a task pool of two threads, a table and preferences, and no document container. The constructing thread is
  /// the host thread.
  World();
  /// Shuts down.
  ~World() override;
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// The process's world; null when none was announced.
  [[nodiscard]] static du::SmartPtr<World> GetWorld();
  static void SetWorld(const du::SmartPtr<World>& world);

  [[nodiscard]] du::SmartPtr<du::TaskPool> GetTaskPool() const;
  [[nodiscard]] du::SmartPtr<MultiRootContainer> GetMRC() const;
  [[nodiscard]] du::SmartPtr<AnnoSetTable> GetAnnoSetTable() const;
  [[nodiscard]] du::SmartPtr<Preferences> GetPreferences() const;
  void SetTaskPool(const du::SmartPtr<du::TaskPool>& pool);
  void SetMRC(const du::SmartPtr<MultiRootContainer>& container);
  void SetPreferences(const du::SmartPtr<Preferences>& preferences);

  /// With `fromAnyThread` false the observer hears only what happens on the host thread. Null and a registered observer
  /// change nothing.
  void RegisterObserver(const du::SmartPtr<WorldObserver>& observer, bool fromAnyThread);
  /// Never waits for a notification under way.
  void DeregisterObserver(const du::SmartPtr<WorldObserver>& observer);
  [[nodiscard]] std::size_t GetObserverCount() const;

  /// Makes it the localizer's current language and tells the observers.
  void ChangeLanguage(const std::string& language);
  /// Tells the observers that a scene was opened; the world does not keep it.
  void AnnounceScene(const du::SmartPtr<Scene>& scene);
  void NotifyAnnoSetTableChanged();

  /// Ends the world in order: tells the observers, refuses new tasks and finishes the old ones, clears the undo
  /// histories, terminates the component library. Calling it again does nothing. Not to be called from a task.
  void Shutdown();

private:
  void Notify(const std::function<void(WorldObserver&)>& notification) const;

  const std::thread::id hostThread_;
  mutable dp::Mutex mutex_;
  du::SmartPtr<du::TaskPool> taskPool_ ZR_GUARDED_BY(mutex_);
  du::SmartPtr<AnnoSetTable> annoSetTable_;
  du::SmartPtr<MultiRootContainer> container_ ZR_GUARDED_BY(mutex_);
  du::SmartPtr<Preferences> preferences_ ZR_GUARDED_BY(mutex_);
  std::vector<std::pair<du::SmartPtr<WorldObserver>, bool>> observers_ ZR_GUARDED_BY(mutex_);
  bool isShutDown_ ZR_GUARDED_BY(mutex_) = false;
};

}  // namespace zrk
