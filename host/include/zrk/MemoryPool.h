#pragma once

#include <cstddef>

#include <du/Export.h>

namespace zrk {

/// The allocator behind every pool class, and the place where allocations can be made to fail on purpose. A failing
/// allocation returns null, so that `new X` of a pool class yields null. [any-thread]
///
/// One injection is armed at a time: arming replaces the previous one and restarts GetInjectedCount.
class ZR_HOST_API MemoryPool {
public:
  /// Keeps injected faults away from this thread while it lives: allocations neither fail nor count as successes.
  class ZR_HOST_API InjectionPause {
  public:
    InjectionPause() noexcept;
    ~InjectionPause();
    InjectionPause(const InjectionPause&) = delete;
    InjectionPause& operator=(const InjectionPause&) = delete;
  };

  /// The next `count` allocations fail; 0 disarms.
  static void FailNext(unsigned count);
  /// `successes` allocations succeed, then `failures` fail.
  static void FailAfter(unsigned successes, unsigned failures);
  /// All allocations fail until it is switched off.
  static void FailAlways(bool on);
  /// Injection concerns only the calling thread, or all threads again.
  static void LimitToThisThread(bool on);
  /// Allocations that injection made fail since it was last armed.
  [[nodiscard]] static std::size_t GetInjectedCount();

  /// Allocations not yet freed, and all allocations ever made, arenas included.
  [[nodiscard]] static std::size_t GetLiveCount();
  [[nodiscard]] static std::size_t GetTotalCount();

  /// Memory for any type, or null: an injected fault or nothing left.
  [[nodiscard]] static void* Allocate(std::size_t size) noexcept;
  /// Null is ignored.
  static void Free(void* memory) noexcept;

private:
  friend class AddressArena;
  [[nodiscard]] static bool IsNextFault() noexcept;
  static void CountAllocation() noexcept;
  static void CountRelease() noexcept;
};

}  // namespace zrk
