#include <zrk/Operation.h>

#include <zrk/OperationStep.h>
#include <zrk/Scene.h>

namespace zrk {

Operation::Operation(const std::string& name, const du::SmartPtr<Scene>& scene, bool undoable)
    : name_(name), scene_(scene), undoable_(undoable) {}

Operation::~Operation() = default;

void Operation::AddStep(const du::SmartPtr<OperationStep>& step) {
  if (!step) return;
  {
    const dp::MutexGuard guard(mutex_);
    steps_.push_back(step);
  }
  step->OnAddedToOperation();
}

std::string Operation::GetName() const {
  return name_;
}

std::size_t Operation::GetStepCount() const {
  const dp::MutexGuard guard(mutex_);
  return steps_.size();
}

std::vector<du::SmartPtr<OperationStep>> Operation::GetSteps() const {
  const dp::MutexGuard guard(mutex_);
  return steps_;
}

du::SmartPtr<Scene> Operation::GetScene() const {
  return scene_;
}

bool Operation::IsUndoable() const {
  return undoable_;
}

void Operation::Undo() {
  const std::vector<du::SmartPtr<OperationStep>> steps = GetSteps();
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) (*step)->Undo();
}

void Operation::Redo() {
  for (const auto& step : GetSteps()) step->Redo();
}

}  // namespace zrk
