#pragma once

#include <cstddef>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/RecordOperation.h>

namespace zrk {

class Operation;
class Scene;

/// The operations done and undone, for each scene. A recorded operation keeps its scene alive until the history lets go
/// of it. No lock is held while steps run. [any-thread]
class ZR_HOST_API UndoHistory {
public:
  /// Operations that can be undone.
  [[nodiscard]] static std::size_t GetCount(const du::SmartPtr<Scene>& scene);
  /// Operations that can be redone.
  [[nodiscard]] static std::size_t GetRedoCount(const du::SmartPtr<Scene>& scene);
  /// The operation that Undo would take back; null when there is none.
  [[nodiscard]] static du::SmartPtr<Operation> GetLast(const du::SmartPtr<Scene>& scene);
  /// Takes the last operation back. False when there is none, and while the scene is undoing or redoing already.
  static bool Undo(const du::SmartPtr<Scene>& scene);
  /// Makes the operation undone last again. False as for Undo.
  static bool Redo(const du::SmartPtr<Scene>& scene);
  /// Whether this thread is just undoing or redoing an operation of the scene.
  [[nodiscard]] static bool IsRunning(const du::SmartPtr<Scene>& scene);
  static void Clear(const du::SmartPtr<Scene>& scene);
  /// Clears the histories of all scenes.
  static void Clear();

private:
  friend ZR_HOST_API void RecordOperation(const du::SmartPtr<Operation>& operation);
  static void Record(const du::SmartPtr<Operation>& operation);
};

}  // namespace zrk
