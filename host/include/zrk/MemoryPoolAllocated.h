#pragma once

#include <cstddef>

#include <du/Export.h>

namespace zrk {

/// Base without data or virtual functions that takes a class's objects from the memory pool. The allocation may return
/// nothing; a new-expression then skips the constructor and yields null.
class ZR_HOST_API MemoryPoolAllocated {
public:
  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* memory) noexcept;

protected:
  ~MemoryPoolAllocated() = default;
};

}  // namespace zrk
