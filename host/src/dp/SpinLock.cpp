#include <dp/SpinLock.h>

#include <thread>

namespace dp {

void SpinLock::Lock() noexcept {
  while (locked_.exchange(true, std::memory_order_acquire)) {
    // Reading does not take the cache line away from the holder; yielding lets it finish on a busy machine.
    while (locked_.load(std::memory_order_relaxed)) std::this_thread::yield();
  }
}

void SpinLock::Unlock() noexcept {
  locked_.store(false, std::memory_order_release);
}

bool SpinLock::TryLock() noexcept {
  return !locked_.exchange(true, std::memory_order_acquire);
}

}  // namespace dp
