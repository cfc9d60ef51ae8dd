// Whose allocation it is: the first code on the stack behind the allocator and the standard library. What the standard
// library does inside (a string that grows, a stream) belongs to whoever called it; inline code of the host's headers
// belongs to the component that compiled it.
#include "faults/AllocationFaults.h"

#include <dlfcn.h>
#include <unwind.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <optional>

#include <zrcallouts/Functions.h>
#include <zrk/MemoryPool.h>

namespace zrtest {

namespace {

/// Of the executable or shared library that the address lies in.
const void* FileOf(std::uintptr_t address) {
  dl_find_object file{};
  return _dl_find_object(reinterpret_cast<void*>(address), &file) == 0 ? file.dlfo_link_map : nullptr;
}

const void* const kComponent = FileOf(reinterpret_cast<std::uintptr_t>(&zrcallouts::GetCalloutsEngineForScene));
const void* const kStandardLibrary = FileOf(reinterpret_cast<std::uintptr_t>(&std::get_terminate));

std::atomic<Memory> failing{Memory::Pool};

struct Walk {
  const std::uintptr_t caller;  // of the allocator
  bool isBehindAllocator = false;
  bool isDirect = true;
  std::optional<Memory> memory = {};
};

_Unwind_Reason_Code Step(_Unwind_Context* context, void* data) {
  auto& walk = *static_cast<Walk*>(data);
  const std::uintptr_t address = _Unwind_GetIP(context);
  walk.isBehindAllocator = walk.isBehindAllocator || address == walk.caller;
  const void* const file = FileOf(address - 1);
  if (!walk.isBehindAllocator || file == kStandardLibrary) return _URC_NO_REASON;
  if (file == kComponent) walk.memory = walk.isDirect ? Memory::Ordinary : Memory::OnBehalf;
  walk.isDirect = false;
  return file == kComponent || failing == Memory::Ordinary ? _URC_END_OF_STACK : _URC_NO_REASON;
}

/// Nothing when the component has no part in the allocation.
std::optional<Memory> MemoryOf(const void* caller) {
  Walk walk{reinterpret_cast<std::uintptr_t>(caller)};
  _Unwind_Backtrace(Step, &walk);
  return walk.memory;
}

std::atomic<bool> isArmed{false};
std::atomic<long> successesLeft{0};
std::atomic<long> failuresLeft{0};
std::atomic<std::size_t> injected{0};
std::atomic<std::size_t> seen{0};
std::atomic<long> live{0};

bool IsNextFault(const void* caller) {
  if (!isArmed || MemoryOf(caller) != failing) return false;
  ++seen;
  if (successesLeft.fetch_sub(1) > 0 || failuresLeft.fetch_sub(1) <= 0) return false;
  ++injected;
  return true;
}

void* Allocate(std::size_t size, const void* caller, std::size_t alignment = 1) noexcept {
  if (IsNextFault(caller)) return nullptr;
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
  void* const memory = alignment > alignof(std::max_align_t) ? std::aligned_alloc(alignment, rounded)
                                                             : std::malloc(size == 0 ? 1 : size);
  if (memory) ++live;
  return memory;
}

void* AllocateOrThrow(std::size_t size, const void* caller, std::size_t alignment = 1) {
  void* const memory = Allocate(size, caller, alignment);
  if (!memory) throw std::bad_alloc();
  return memory;
}

void Free(void* memory) noexcept {
  if (!memory) return;
  --live;
  std::free(memory);
}

}  // namespace

AllocationFaults::AllocationFaults(Memory memory, unsigned successes, unsigned failures)
    : memory_(memory), poolBefore_(zrk::MemoryPool::GetTotalCount()) {
  if (memory == Memory::Pool) {
    zrk::MemoryPool::FailAfter(successes, failures);
    return;
  }
  successesLeft = successes;
  failuresLeft = failures;
  injected = seen = 0;
  failing = memory;
  isArmed = true;
}

AllocationFaults::~AllocationFaults() {
  isArmed = false;
  zrk::MemoryPool::FailNext(0);
}

std::size_t AllocationFaults::GetInjectedCount() const {
  return memory_ == Memory::Pool ? zrk::MemoryPool::GetInjectedCount() : injected.load();
}

// Of the pool, what the host makes for itself counts too.
std::size_t AllocationFaults::GetSeenCount() const {
  return memory_ == Memory::Pool ? zrk::MemoryPool::GetTotalCount() - poolBefore_ : seen.load();
}

long AllocationFaults::GetLiveCount() {
  return live;
}

}  // namespace zrtest

// The array forms of the standard library, and those that answer null for aligned memory, end in these.
void* operator new(std::size_t size) {
  return zrtest::AllocateOrThrow(size, __builtin_return_address(0));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  return zrtest::AllocateOrThrow(size, __builtin_return_address(0), static_cast<std::size_t>(alignment));
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return zrtest::Allocate(size, __builtin_return_address(0));
}

void operator delete(void* memory) noexcept {
  zrtest::Free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  zrtest::Free(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept {
  zrtest::Free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  zrtest::Free(memory);
}
