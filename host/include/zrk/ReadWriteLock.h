#pragma once

#include <dp/ReadWriteLock.h>
#include <du/Export.h>
#include <du/RefCounted.h>
#include <zrk/MemoryPoolAllocated.h>

namespace zrk {

/// A counted read-write lock from the memory pool, which several objects may share.
class ZR_HOST_API ReadWriteLock : public dp::ReadWriteLock, public MemoryPoolAllocated, public virtual du::RefCounted {
public:
  ReadWriteLock();
  ~ReadWriteLock() override;
};

}  // namespace zrk
