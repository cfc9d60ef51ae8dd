#pragma once

#include <mutex>

#include <dp/ThreadSafety.h>

namespace dp {

/// std::mutex that the thread-safety analysis understands. The host's private state sits behind it; it is never held
/// while calling out.
class ZR_CAPABILITY("mutex") Mutex {
public:
  Mutex() = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  // The standard's names, so that condition variables can wait on it.
  void lock() ZR_ACQUIRE() { mutex_.lock(); }
  void unlock() ZR_RELEASE() { mutex_.unlock(); }

private:
  std::mutex mutex_;
};

/// Holds a Mutex for its scope.
class ZR_SCOPED_CAPABILITY MutexGuard {
public:
  explicit MutexGuard(Mutex& mutex) ZR_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  ~MutexGuard() ZR_RELEASE() { mutex_.unlock(); }
  MutexGuard(const MutexGuard&) = delete;
  MutexGuard& operator=(const MutexGuard&) = delete;

private:
  Mutex& mutex_;
};

}  // namespace dp
