#pragma once

#include <atomic>

#include <du/Export.h>

namespace du {

/// Base of every counted object, inherited virtually. The count starts at 0: a new object has no reference until a
/// SmartPtr takes one. Counting is atomic. [any-thread]
class ZR_HOST_API RefCounted {
public:
  RefCounted() noexcept;
  /// A copy starts without references: the count is never copied.
  RefCounted(const RefCounted& other) noexcept;
  /// Leaves the count alone.
  RefCounted& operator=(const RefCounted& other) noexcept;
  virtual ~RefCounted();

  void AddReference() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
  /// Gives one reference back. At zero the object is deleted when ZeroReferenceCountHook agrees.
  void RemoveReference() const noexcept {
    if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1 && ZeroReferenceCountHook()) delete this;
  }
  /// Asked when the count reaches zero: true deletes the object, false leaves it to whoever manages it.
  [[nodiscard]] virtual bool ZeroReferenceCountHook() const;
  /// Takes a reference only while somebody else holds one; false when the count is already 0.
  [[nodiscard]] bool TryAddReference() const noexcept;

  [[nodiscard]] unsigned GetReferenceCount() const noexcept;
  /// Counted objects of all kinds that exist in the process.
  [[nodiscard]] static long GetLiveObjectCount() noexcept;

private:
  mutable std::atomic<long> count_{0};
};

}  // namespace du
