#pragma once

#include <cstddef>
#include <memory>
#include <thread>
#include <vector>

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace du {

class Task;

/// Runs tasks on its own threads in the order of insertion, never on the inserting thread. In manual mode tasks wait
/// until they are asked for, which makes tests deterministic. [any-thread]
class ZR_HOST_API TaskPool : public virtual RefCounted {
public:
  explicit TaskPool(unsigned threadCount = 2);
  /// Shuts down.
  ~TaskPool() override;
  TaskPool(const TaskPool&) = delete;
  TaskPool& operator=(const TaskPool&) = delete;

  /// Queues the task and returns at once. False, with the reference dropped, for null and after Shutdown.
  bool InsertTask(const SmartPtr<Task>& task);
  /// Refuses further tasks, runs those still waiting and ends the threads. May be called again.
  void Shutdown();

  void SetManual(bool manual);
  /// Runs the tasks that wait now on a fresh thread, joins it, and returns how many they were.
  std::size_t RunPending();
  /// Returns when no task runs and, except in manual mode, none waits. Not to be called from a task.
  void WaitIdle();
  [[nodiscard]] std::size_t GetPendingCount() const;
  /// Tasks whose Run was left by an exception.
  [[nodiscard]] std::size_t GetFailedCount() const;

private:
  class Queue;
  static void Work(Queue& queue);

  std::shared_ptr<Queue> queue_;
  std::vector<std::thread> threads_;
};

}  // namespace du
