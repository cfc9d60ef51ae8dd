#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>

namespace zrk {

/// Memory for one family of classes: slots of one size in one reserved address range, lowest free slot first, so that
/// the order of addresses is the order of creation until something is freed, and the same commands give the same order.
/// Address space is reserved at once, memory only as slots are used. Injected faults and the pool's statistics apply.
/// What does not fit (size or number) comes from the pool. Freed slots are poisoned under the address sanitizer.
/// Arenas are meant to live as long as the process. [any-thread]
class ZR_HOST_API AddressArena {
public:
  explicit AddressArena(std::size_t slotSize, std::size_t slotCount = std::size_t{1} << 20);
  /// No object may be left in the arena.
  ~AddressArena();
  AddressArena(const AddressArena&) = delete;
  AddressArena& operator=(const AddressArena&) = delete;

  /// A slot, or null: an injected fault or nothing left.
  [[nodiscard]] void* Allocate(std::size_t size) noexcept;
  /// Takes back what Allocate returned; null is ignored.
  void Free(void* memory) noexcept;
  [[nodiscard]] std::size_t GetSlotSize() const { return slotSize_; }

private:
  static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);

  [[nodiscard]] bool Owns(const void* memory) const noexcept;
  [[nodiscard]] std::size_t TakeSlot() noexcept ZR_REQUIRES(mutex_);
  [[nodiscard]] bool CommitNextChunk() noexcept ZR_REQUIRES(mutex_);
  void SetFree(std::size_t slot, bool free) noexcept ZR_REQUIRES(mutex_);

  const std::size_t slotSize_;
  const std::size_t slotCount_;
  std::size_t reservedBytes_ = 0;
  std::byte* base_ = nullptr;

  dp::Mutex mutex_;
  std::size_t usedSlots_ ZR_GUARDED_BY(mutex_) = 0;
  std::size_t committedBytes_ ZR_GUARDED_BY(mutex_) = 0;
  /// Free slots below usedSlots_: level 0 has a bit a slot, each further level a bit a non-zero word of the one below.
  std::vector<std::vector<std::uint64_t>> freeBits_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
