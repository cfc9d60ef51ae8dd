#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>
#include <zrk/ReadWriteLock.h>

namespace zrk {

/// An object with a read-write lock, its own or a shared one.
class ZR_HOST_API ObjectWithRWLock : public Object {
public:
  /// With a lock of its own, or with none while locks are not supplied.
  ObjectWithRWLock();
  /// With that lock; null means none.
  explicit ObjectWithRWLock(const du::SmartPtr<ReadWriteLock>& lock);
  ~ObjectWithRWLock() override;
  ObjectWithRWLock(const ObjectWithRWLock&) = delete;
  ObjectWithRWLock& operator=(const ObjectWithRWLock&) = delete;

  /// Null when there is none: operations then run unlocked. The lock lives as long as the object.
  [[nodiscard]] dp::ReadWriteLock* GetReadWriteLock() const;
  /// Whether objects made from now on get a lock of their own; on at first.
  static void SupplyLocks(bool on);

private:
  const du::SmartPtr<ReadWriteLock> lock_;
};

}  // namespace zrk
