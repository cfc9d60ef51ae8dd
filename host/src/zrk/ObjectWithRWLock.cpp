#include <zrk/ObjectWithRWLock.h>

#include <atomic>

#include <zrk/MakeObject.h>

namespace zrk {

namespace {

std::atomic<bool> suppliesLocks{true};

du::SmartPtr<ReadWriteLock> MakeLock() {
  if (!suppliesLocks) return nullptr;
  return MakeObject<ReadWriteLock>();
}

}  // namespace

ObjectWithRWLock::ObjectWithRWLock() : lock_(MakeLock()) {}

ObjectWithRWLock::ObjectWithRWLock(const du::SmartPtr<ReadWriteLock>& lock) : lock_(lock) {}

ObjectWithRWLock::~ObjectWithRWLock() = default;

dp::ReadWriteLock* ObjectWithRWLock::GetReadWriteLock() const {
  return lock_.Get();
}

void ObjectWithRWLock::SupplyLocks(bool on) {
  suppliesLocks = on;
}

}  // namespace zrk
