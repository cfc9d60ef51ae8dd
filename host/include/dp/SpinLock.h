#pragma once

#include <atomic>

#include <dp/ThreadSafety.h>
#include <du/Export.h>

namespace dp {

/// A lock for a few instructions: waiting threads spin. Not re-entrant. [any-thread]
class ZR_HOST_API ZR_CAPABILITY("spin lock") SpinLock {
public:
  SpinLock() = default;
  SpinLock(const SpinLock&) = delete;
  SpinLock& operator=(const SpinLock&) = delete;

  void Lock() noexcept ZR_ACQUIRE();
  void Unlock() noexcept ZR_RELEASE();
  [[nodiscard]] bool TryLock() noexcept ZR_TRY_ACQUIRE(true);

private:
  std::atomic<bool> locked_{false};
};

}  // namespace dp
