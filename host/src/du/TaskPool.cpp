#include <du/TaskPool.h>

#include <condition_variable>
#include <deque>
#include <utility>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Task.h>

namespace du {

/// What the threads share. They own it together with the pool: a task may drop the last reference to the pool on one of
/// the pool's own threads, which then still has to return from its loop.
class TaskPool::Queue {
public:
  bool Insert(const SmartPtr<Task>& task) {
    const dp::MutexGuard guard(mutex_);
    if (closed_) return false;
    tasks_.push_back(task);
    changed_.notify_all();
    return true;
  }

  /// Waits for a task for a worker; null when the queue is closed and drained.
  SmartPtr<Task> TakeForWorker() {
    const dp::MutexGuard guard(mutex_);
    while (!closed_ && (manual_ || tasks_.empty())) changed_.wait(mutex_);
    return TakeLocked();
  }

  SmartPtr<Task> Take() {
    const dp::MutexGuard guard(mutex_);
    return TakeLocked();
  }

  /// Runs the task and lets go of it before it counts as done, so that an idle pool holds nothing.
  void Run(SmartPtr<Task> task) {
    bool failed = false;
    try {
      task->Run();
    } catch (...) {
      failed = true;
    }
    task.Reset();
    const dp::MutexGuard guard(mutex_);
    --running_;
    failed_ += failed ? 1 : 0;
    changed_.notify_all();
  }

  void WaitIdle() {
    const dp::MutexGuard guard(mutex_);
    while (running_ > 0 || (!manual_ && !tasks_.empty())) changed_.wait(mutex_);
  }

  void Close() {
    const dp::MutexGuard guard(mutex_);
    closed_ = true;
    changed_.notify_all();
  }

  void SetManual(bool manual) {
    const dp::MutexGuard guard(mutex_);
    manual_ = manual;
    changed_.notify_all();
  }

  std::size_t GetPendingCount() const {
    const dp::MutexGuard guard(mutex_);
    return tasks_.size();
  }

  std::size_t GetFailedCount() const {
    const dp::MutexGuard guard(mutex_);
    return failed_;
  }

private:
  SmartPtr<Task> TakeLocked() ZR_REQUIRES(mutex_) {
    if (tasks_.empty()) return nullptr;
    SmartPtr<Task> task = std::move(tasks_.front());
    tasks_.pop_front();
    ++running_;
    return task;
  }

  mutable dp::Mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<SmartPtr<Task>> tasks_ ZR_GUARDED_BY(mutex_);
  std::size_t running_ ZR_GUARDED_BY(mutex_) = 0;
  std::size_t failed_ ZR_GUARDED_BY(mutex_) = 0;
  bool manual_ ZR_GUARDED_BY(mutex_) = false;
  bool closed_ ZR_GUARDED_BY(mutex_) = false;
};

TaskPool::TaskPool(unsigned threadCount) : queue_(std::make_shared<Queue>()) {
  threads_.reserve(threadCount);
  for (unsigned i = 0; i < threadCount; ++i) {
    threads_.emplace_back([queue = queue_] { Work(*queue); });
  }
}

TaskPool::~TaskPool() {
  Shutdown();
}

void TaskPool::Work(Queue& queue) {
  while (SmartPtr<Task> task = queue.TakeForWorker()) queue.Run(std::move(task));
}

bool TaskPool::InsertTask(const SmartPtr<Task>& task) {
  return task && queue_->Insert(task);
}

void TaskPool::Shutdown() {
  queue_->Close();
  for (std::thread& thread : threads_) {
    if (!thread.joinable()) continue;
    if (thread.get_id() == std::this_thread::get_id()) {
      thread.detach();
    } else {
      thread.join();
    }
  }
}

void TaskPool::SetManual(bool manual) {
  queue_->SetManual(manual);
}

std::size_t TaskPool::RunPending() {
  const std::size_t count = queue_->GetPendingCount();
  std::size_t done = 0;
  std::thread runner([this, count, &done] {
    while (done < count) {
      SmartPtr<Task> task = queue_->Take();
      if (!task) return;
      queue_->Run(std::move(task));
      ++done;
    }
  });
  runner.join();
  return done;
}

void TaskPool::WaitIdle() {
  queue_->WaitIdle();
}

std::size_t TaskPool::GetPendingCount() const {
  return queue_->GetPendingCount();
}

std::size_t TaskPool::GetFailedCount() const {
  return queue_->GetFailedCount();
}

}  // namespace du
