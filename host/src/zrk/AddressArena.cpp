// Free slots are kept as a tree of bit sets with 64 branches: a set bit of level 0 is a free slot, a set bit of a
// higher level says that the word below it has one. The lowest free slot is found by following the lowest set bits
// down, in log64(slots) steps and without allocating. Slots that were never used are not in the tree: `usedSlots_`
// counts them. The tree costs 1/63 bit more than a bit a slot.

#include <zrk/AddressArena.h>

#include <sys/mman.h>

#include <algorithm>
#include <bit>

#include <zrk/MemoryPool.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZR_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(ZR_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif

namespace zrk {

namespace {

constexpr std::size_t kBitsAWord = 64;
constexpr std::size_t kSlotAlignment = 64;
constexpr std::size_t kChunkBytes = std::size_t{1} << 20;

constexpr std::size_t RoundUp(std::size_t value, std::size_t unit) {
  return (value + unit - 1) / unit * unit;
}

void* Reserve(std::size_t bytes) {
  void* memory = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return memory == MAP_FAILED ? nullptr : memory;
}

}  // namespace

AddressArena::AddressArena(std::size_t slotSize, std::size_t slotCount)
    : slotSize_(RoundUp(slotSize, kSlotAlignment)), slotCount_(slotCount) {
  reservedBytes_ = RoundUp(slotSize_ * slotCount_, kChunkBytes);
  base_ = static_cast<std::byte*>(Reserve(reservedBytes_));
  std::size_t words = slotCount_;
  do {
    words = (words + kBitsAWord - 1) / kBitsAWord;
    freeBits_.emplace_back(words);
  } while (words > 1);
}

AddressArena::~AddressArena() {
  if (!base_) return;
  ASAN_UNPOISON_MEMORY_REGION(base_, committedBytes_);
#if defined(__SANITIZE_ADDRESS__) || defined(ZR_ADDRESS_SANITIZER)
  for (std::size_t at = 0; at < committedBytes_; at += kChunkBytes)
    __lsan_unregister_root_region(base_ + at, kChunkBytes);
#endif
  munmap(base_, reservedBytes_);
}

void* AddressArena::Allocate(std::size_t size) noexcept {
  if (!base_ || size > slotSize_) return MemoryPool::Allocate(size);
  if (MemoryPool::IsNextFault()) return nullptr;
  std::size_t slot = kNoSlot;
  {
    const dp::MutexGuard guard(mutex_);
    slot = TakeSlot();
  }
  if (slot == kNoSlot) {
    const MemoryPool::InjectionPause pause;
    return MemoryPool::Allocate(size);
  }
  MemoryPool::CountAllocation();
  void* memory = base_ + slot * slotSize_;
  ASAN_UNPOISON_MEMORY_REGION(memory, size);
  return memory;
}

void AddressArena::Free(void* memory) noexcept {
  if (!Owns(memory)) return MemoryPool::Free(memory);
  ASAN_POISON_MEMORY_REGION(memory, slotSize_);
  MemoryPool::CountRelease();
  const std::size_t slot = static_cast<std::size_t>(static_cast<std::byte*>(memory) - base_) / slotSize_;
  const dp::MutexGuard guard(mutex_);
  SetFree(slot, true);
}

bool AddressArena::Owns(const void* memory) const noexcept {
  const std::less<const void*> isBefore;
  return base_ && memory && !isBefore(memory, base_) && isBefore(memory, base_ + reservedBytes_);
}

std::size_t AddressArena::TakeSlot() noexcept {
  if (freeBits_.back().front() == 0) {
    if (usedSlots_ == slotCount_) return kNoSlot;
    if ((usedSlots_ + 1) * slotSize_ > committedBytes_ && !CommitNextChunk()) return kNoSlot;
    return usedSlots_++;
  }
  std::size_t index = 0;
  for (std::size_t level = freeBits_.size(); level-- > 0;) {
    index = index * kBitsAWord + static_cast<std::size_t>(std::countr_zero(freeBits_[level][index]));
  }
  SetFree(index, false);
  return index;
}

bool AddressArena::CommitNextChunk() noexcept {
  // A slot may reach over a chunk's end, hence as many chunks as it takes.
  const std::size_t wanted = RoundUp((usedSlots_ + 1) * slotSize_, kChunkBytes);
  const std::size_t bytes = wanted - committedBytes_;
  if (mprotect(base_ + committedBytes_, bytes, PROT_READ | PROT_WRITE) != 0) return false;
  ASAN_POISON_MEMORY_REGION(base_ + committedBytes_, bytes);
#if defined(__SANITIZE_ADDRESS__) || defined(ZR_ADDRESS_SANITIZER)
  // The leak detector does not look into mapped memory by itself and would report what live objects own.
  for (std::size_t at = committedBytes_; at < wanted; at += kChunkBytes)
    __lsan_register_root_region(base_ + at, kChunkBytes);
#endif
  committedBytes_ = wanted;
  return true;
}

void AddressArena::SetFree(std::size_t slot, bool free) noexcept {
  std::size_t index = slot;
  for (auto& level : freeBits_) {
    std::uint64_t& word = level[index / kBitsAWord];
    const std::uint64_t bit = std::uint64_t{1} << (index % kBitsAWord);
    const std::uint64_t before = word;
    word = free ? word | bit : word & ~bit;
    // The level above changes only when the word becomes, or stops being, zero.
    if ((before == 0) == (word == 0)) return;
    index /= kBitsAWord;
  }
}

}  // namespace zrk
