#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>

namespace zrk {

class OperationStep;
class Scene;

/// What the user takes back at once: a named list of steps on one scene. Whoever creates it records it once, with
/// RecordOperation. [any-thread]
class ZR_HOST_API Operation : public Object {
public:
  /// With `undoable` false recording the operation leaves no trace. `scene` may be null.
  Operation(const std::string& name, const du::SmartPtr<Scene>& scene, bool undoable);
  ~Operation() override;
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  /// Appends the step and tells it; null is ignored.
  void AddStep(const du::SmartPtr<OperationStep>& step);
  [[nodiscard]] std::string GetName() const;
  [[nodiscard]] std::size_t GetStepCount() const;
  [[nodiscard]] std::vector<du::SmartPtr<OperationStep>> GetSteps() const;
  [[nodiscard]] du::SmartPtr<Scene> GetScene() const;
  [[nodiscard]] bool IsUndoable() const;

  /// Takes the steps back, the last one first. The undo history calls it.
  void Undo();
  /// Makes the steps again, in order. The undo history calls it.
  void Redo();

private:
  const std::string name_;
  const du::SmartPtr<Scene> scene_;
  const bool undoable_;
  mutable dp::Mutex mutex_;
  std::vector<du::SmartPtr<OperationStep>> steps_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
