#include <zrk/MemoryPool.h>

#include <atomic>
#include <cstdlib>
#include <limits>
#include <thread>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>

namespace zrk {

namespace {

constexpr unsigned kForever = std::numeric_limits<unsigned>::max();

struct Injection {
  dp::Mutex mutex;
  unsigned successesLeft ZR_GUARDED_BY(mutex) = 0;
  unsigned failuresLeft ZR_GUARDED_BY(mutex) = 0;
  std::size_t injected ZR_GUARDED_BY(mutex) = 0;
  bool isLimited ZR_GUARDED_BY(mutex) = false;
  std::thread::id onlyThread ZR_GUARDED_BY(mutex);
  /// Read without the mutex by every allocation, which costs nothing then while no injection is armed.
  std::atomic<bool> isArmed{false};
};

Injection& GetInjection() {
  static Injection* injection = new Injection;
  return *injection;
}

void Arm(unsigned successes, unsigned failures) {
  Injection& injection = GetInjection();
  const dp::MutexGuard guard(injection.mutex);
  injection.successesLeft = successes;
  injection.failuresLeft = failures;
  if (failures > 0) injection.injected = 0;
  injection.isArmed = failures > 0;
}

thread_local unsigned pauseDepth = 0;
std::atomic<std::size_t> liveCount{0};
std::atomic<std::size_t> totalCount{0};

}  // namespace

MemoryPool::InjectionPause::InjectionPause() noexcept {
  ++pauseDepth;
}

MemoryPool::InjectionPause::~InjectionPause() {
  --pauseDepth;
}

void MemoryPool::FailNext(unsigned count) {
  Arm(0, count);
}

void MemoryPool::FailAfter(unsigned successes, unsigned failures) {
  Arm(successes, failures);
}

void MemoryPool::FailAlways(bool on) {
  Arm(0, on ? kForever : 0);
}

void MemoryPool::LimitToThisThread(bool on) {
  Injection& injection = GetInjection();
  const dp::MutexGuard guard(injection.mutex);
  injection.isLimited = on;
  injection.onlyThread = std::this_thread::get_id();
}

std::size_t MemoryPool::GetInjectedCount() {
  Injection& injection = GetInjection();
  const dp::MutexGuard guard(injection.mutex);
  return injection.injected;
}

std::size_t MemoryPool::GetLiveCount() {
  return liveCount;
}

std::size_t MemoryPool::GetTotalCount() {
  return totalCount;
}

bool MemoryPool::IsNextFault() noexcept {
  Injection& injection = GetInjection();
  if (pauseDepth > 0 || !injection.isArmed) return false;
  const dp::MutexGuard guard(injection.mutex);
  if (injection.isLimited && injection.onlyThread != std::this_thread::get_id()) return false;
  if (injection.successesLeft > 0) {
    --injection.successesLeft;
    return false;
  }
  if (injection.failuresLeft == 0) return false;
  if (injection.failuresLeft != kForever && --injection.failuresLeft == 0) injection.isArmed = false;
  ++injection.injected;
  return true;
}

void MemoryPool::CountAllocation() noexcept {
  ++liveCount;
  ++totalCount;
}

void MemoryPool::CountRelease() noexcept {
  --liveCount;
}

void* MemoryPool::Allocate(std::size_t size) noexcept {
  if (IsNextFault()) return nullptr;
  void* memory = std::malloc(size);
  if (memory) CountAllocation();
  return memory;
}

void MemoryPool::Free(void* memory) noexcept {
  if (!memory) return;
  CountRelease();
  std::free(memory);
}

}  // namespace zrk
