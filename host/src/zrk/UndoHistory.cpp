// Each scene has a list of operations done and one of operations undone. While steps run, the operation is in neither
// list and the scene is marked with the running thread: further undoing and redoing is refused, and what reactions to
// the steps record on that thread is dropped, since it is part of the operation already. An operation that another
// thread records meanwhile counts as newer: it ends the redo list, with the operation that is just being undone.

#include <zrk/UndoHistory.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <thread>
#include <utility>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <zrk/Operation.h>
#include <zrk/Scene.h>

namespace zrk {

namespace {

using Operations = std::vector<du::SmartPtr<Operation>>;

struct SceneHistory {
  Operations done;
  Operations undone;
  std::thread::id runningThread;
  bool isRunning = false;
  /// The running operation was cleared away and joins no list when it is through.
  bool isRunStale = false;
  /// Grows with every recorded operation.
  unsigned long generation = 0;
};

struct Histories {
  dp::Mutex mutex;
  std::map<const Scene*, SceneHistory> byScene ZR_GUARDED_BY(mutex);
};

Histories& GetHistories() {
  static Histories* histories = new Histories;
  return *histories;
}

bool Contains(const Operations& operations, const du::SmartPtr<Operation>& operation) {
  return std::find(operations.begin(), operations.end(), operation) != operations.end();
}

/// Empties both lists, and a running operation's return to them is off.
SceneHistory TakeOperations(SceneHistory& history) {
  SceneHistory taken;
  taken.done.swap(history.done);
  taken.undone.swap(history.undone);
  history.isRunStale = history.isRunning;
  return taken;
}

/// Takes the last operation out of the list for the time in which its steps run.
class Run {
public:
  Run(const du::SmartPtr<Scene>& scene, Operations SceneHistory::*list) : scene_(scene) {
    Histories& histories = GetHistories();
    const dp::MutexGuard guard(histories.mutex);
    const auto found = histories.byScene.find(scene.Get());
    if (found == histories.byScene.end() || found->second.isRunning || (found->second.*list).empty()) return;
    SceneHistory& history = found->second;
    operation_ = (history.*list).back();
    (history.*list).pop_back();
    history.isRunning = true;
    history.isRunStale = false;
    history.runningThread = std::this_thread::get_id();
    generation_ = history.generation;
    doneBefore_ = history.done.size();
  }
  ~Run() {
    if (!operation_) return;
    Histories& histories = GetHistories();
    const dp::MutexGuard guard(histories.mutex);
    const auto found = histories.byScene.find(scene_.Get());
    found->second.isRunning = false;
    if (found->second.done.empty() && found->second.undone.empty()) histories.byScene.erase(found);
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  [[nodiscard]] const du::SmartPtr<Operation>& GetOperation() const { return operation_; }

  void FinishUndo() {
    Histories& histories = GetHistories();
    const dp::MutexGuard guard(histories.mutex);
    SceneHistory& history = histories.byScene[scene_.Get()];
    if (!history.isRunStale && history.generation == generation_) history.undone.push_back(operation_);
  }

  void FinishRedo() {
    Histories& histories = GetHistories();
    const dp::MutexGuard guard(histories.mutex);
    SceneHistory& history = histories.byScene[scene_.Get()];
    if (history.isRunStale) return;
    const auto place = static_cast<std::ptrdiff_t>(std::min(doneBefore_, history.done.size()));
    history.done.insert(history.done.begin() + place, operation_);
  }

private:
  const du::SmartPtr<Scene> scene_;
  du::SmartPtr<Operation> operation_;
  unsigned long generation_ = 0;
  std::size_t doneBefore_ = 0;
};

}  // namespace

std::size_t UndoHistory::GetCount(const du::SmartPtr<Scene>& scene) {
  Histories& histories = GetHistories();
  const dp::MutexGuard guard(histories.mutex);
  const auto found = histories.byScene.find(scene.Get());
  return found == histories.byScene.end() ? 0 : found->second.done.size();
}

std::size_t UndoHistory::GetRedoCount(const du::SmartPtr<Scene>& scene) {
  Histories& histories = GetHistories();
  const dp::MutexGuard guard(histories.mutex);
  const auto found = histories.byScene.find(scene.Get());
  return found == histories.byScene.end() ? 0 : found->second.undone.size();
}

du::SmartPtr<Operation> UndoHistory::GetLast(const du::SmartPtr<Scene>& scene) {
  Histories& histories = GetHistories();
  const dp::MutexGuard guard(histories.mutex);
  const auto found = histories.byScene.find(scene.Get());
  if (found == histories.byScene.end() || found->second.done.empty()) return nullptr;
  return found->second.done.back();
}

void UndoHistory::Record(const du::SmartPtr<Operation>& operation) {
  Operations released;
  const du::SmartPtr<Scene> scene = operation->GetScene();
  Histories& histories = GetHistories();
  const dp::MutexGuard guard(histories.mutex);
  // Asked with the lock held: a scene that is destroyed from here on clears its history later.
  if (scene && scene->IsDestroyed()) return;
  SceneHistory& history = histories.byScene[scene.Get()];
  if (history.isRunning && history.runningThread == std::this_thread::get_id()) return;
  if (Contains(history.done, operation) || Contains(history.undone, operation)) return;
  released.swap(history.undone);
  history.done.push_back(operation);
  ++history.generation;
}

bool UndoHistory::Undo(const du::SmartPtr<Scene>& scene) {
  Run run(scene, &SceneHistory::done);
  if (!run.GetOperation()) return false;
  run.GetOperation()->Undo();
  run.FinishUndo();
  return true;
}

bool UndoHistory::Redo(const du::SmartPtr<Scene>& scene) {
  Run run(scene, &SceneHistory::undone);
  if (!run.GetOperation()) return false;
  run.GetOperation()->Redo();
  run.FinishRedo();
  return true;
}

bool UndoHistory::IsRunning(const du::SmartPtr<Scene>& scene) {
  Histories& histories = GetHistories();
  const dp::MutexGuard guard(histories.mutex);
  const auto found = histories.byScene.find(scene.Get());
  return found != histories.byScene.end() && found->second.isRunning &&
         found->second.runningThread == std::this_thread::get_id();
}

void UndoHistory::Clear(const du::SmartPtr<Scene>& scene) {
  // Declared before the guard: what is cleared dies after the lock is free again.
  SceneHistory released;
  Histories& histories = GetHistories();
  const dp::MutexGuard guard(histories.mutex);
  const auto found = histories.byScene.find(scene.Get());
  if (found == histories.byScene.end()) return;
  released = TakeOperations(found->second);
  if (!found->second.isRunning) histories.byScene.erase(found);
}

void UndoHistory::Clear() {
  std::vector<SceneHistory> released;
  Histories& histories = GetHistories();
  const dp::MutexGuard guard(histories.mutex);
  for (auto entry = histories.byScene.begin(); entry != histories.byScene.end();) {
    released.push_back(TakeOperations(entry->second));
    entry = entry->second.isRunning ? std::next(entry) : histories.byScene.erase(entry);
  }
}

}  // namespace zrk
