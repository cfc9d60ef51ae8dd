// Whose allocation it is: the first code on the stack behind the allocator and the standard library. What the standard
// library does inside (a string that grows, a stream) belongs to whoever called it; inline code of the host's headers
// belongs to the component that compiled it.
#include "faults/AllocationFaults.h"

#include <dlfcn.h>
#include <link.h>
#include <unwind.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include <zrcallouts/Functions.h>
#include <zrk/MemoryPool.h>

namespace zrtest {

namespace {

struct Range {
  std::uintptr_t begin = 0;
  std::uintptr_t end = 0;
  [[nodiscard]] bool Contains(std::uintptr_t address) const { return address >= begin && address < end; }
};

struct Lookup {
  const char* file;
  Range range;
};

int TakeCodeRange(dl_phdr_info* info, std::size_t, void* data) {
  auto& lookup = *static_cast<Lookup*>(data);
  if (std::strstr(info->dlpi_name, lookup.file) == nullptr) return 0;
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const auto& segment = info->dlpi_phdr[i];
    if (segment.p_type != PT_LOAD || (segment.p_flags & PF_X) == 0) continue;
    lookup.range = {info->dlpi_addr + segment.p_vaddr, info->dlpi_addr + segment.p_vaddr + segment.p_memsz};
  }
  return 1;
}

Range CodeOf(const char* file) {
  Lookup lookup{file, {}};
  dl_iterate_phdr(TakeCodeRange, &lookup);
  return lookup.range;
}

struct Code {
  const Range component = CodeOf("libzrcallouts.so");
  const Range standardLibrary = CodeOf("libstdc++.so");
};

const Code& GetCode() {
  static const Code code;
  return code;
}

struct Walk {
  bool inStandardLibrary = false;
  bool isComponents = false;
};

_Unwind_Reason_Code SearchComponent(_Unwind_Context* context, void* found) {
  *static_cast<bool*>(found) = GetCode().component.Contains(_Unwind_GetIP(context) - 1);
  return *static_cast<bool*>(found) ? _URC_END_OF_STACK : _URC_NO_REASON;
}

bool IsBelowComponent() {
  bool found = false;
  _Unwind_Backtrace(SearchComponent, &found);
  return found;
}

_Unwind_Reason_Code Step(_Unwind_Context* context, void* data) {
  auto& walk = *static_cast<Walk*>(data);
  const std::uintptr_t address = _Unwind_GetIP(context) - 1;
  if (GetCode().standardLibrary.Contains(address)) {
    walk.inStandardLibrary = true;
    return _URC_NO_REASON;
  }
  if (!walk.inStandardLibrary) return _URC_NO_REASON;  // the allocator itself
  walk.isComponents = GetCode().component.Contains(address);
  return _URC_END_OF_STACK;
}

bool IsComponents(const void* caller) {
  const auto address = reinterpret_cast<std::uintptr_t>(caller) - 1;
  if (!GetCode().standardLibrary.Contains(address)) return GetCode().component.Contains(address);
  Walk walk;
  _Unwind_Backtrace(Step, &walk);
  return walk.isComponents;
}

std::atomic<bool> isArmed{false};
std::atomic<bool> onBehalf{false};
std::atomic<long> successesLeft{0};
std::atomic<long> failuresLeft{0};
std::atomic<std::size_t> injected{0};
std::atomic<std::size_t> seen{0};
std::atomic<long> live{0};

bool IsNextFault(const void* caller) {
  if (!isArmed || IsComponents(caller) == onBehalf || (onBehalf && !IsBelowComponent())) return false;
  ++seen;
  if (successesLeft.fetch_sub(1) > 0 || failuresLeft.fetch_sub(1) <= 0) return false;
  ++injected;
  return true;
}

}  // namespace

AllocationFaults::AllocationFaults(Memory memory, unsigned successes, unsigned failures)
    : memory_(memory), poolBefore_(zrk::MemoryPool::GetTotalCount()) {
  static_cast<void>(GetCode());
  if (memory == Memory::Pool) {
    zrk::MemoryPool::FailAfter(successes, failures);
    return;
  }
  successesLeft = successes;
  failuresLeft = failures;
  injected = seen = 0;
  onBehalf = memory == Memory::OnBehalf;
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

namespace {

void* Allocate(std::size_t size, std::size_t alignment, const void* caller) noexcept {
  if (IsNextFault(caller)) return nullptr;
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
  void* const memory = alignment > alignof(std::max_align_t) ? std::aligned_alloc(alignment, rounded)
                                                             : std::malloc(size == 0 ? 1 : size);
  if (memory) ++live;
  return memory;
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment, const void* caller) {
  void* const memory = Allocate(size, alignment, caller);
  if (!memory) throw std::bad_alloc();
  return memory;
}

void Free(void* memory) noexcept {
  if (!memory) return;
  --live;
  std::free(memory);
}

constexpr std::size_t kPlain = 1;

}  // namespace

}  // namespace zrtest

void* operator new(std::size_t size) {
  return zrtest::AllocateOrThrow(size, zrtest::kPlain, __builtin_return_address(0));
}

void* operator new[](std::size_t size) {
  return zrtest::AllocateOrThrow(size, zrtest::kPlain, __builtin_return_address(0));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  return zrtest::AllocateOrThrow(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
  return zrtest::AllocateOrThrow(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return zrtest::Allocate(size, zrtest::kPlain, __builtin_return_address(0));
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return zrtest::Allocate(size, zrtest::kPlain, __builtin_return_address(0));
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return zrtest::Allocate(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}

void operator delete(void* memory) noexcept {
  zrtest::Free(memory);
}

void operator delete[](void* memory) noexcept {
  zrtest::Free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  zrtest::Free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
  zrtest::Free(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept {
  zrtest::Free(memory);
}

void operator delete[](void* memory, std::align_val_t) noexcept {
  zrtest::Free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  zrtest::Free(memory);
}

void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  zrtest::Free(memory);
}
