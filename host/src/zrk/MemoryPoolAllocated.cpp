#include <zrk/MemoryPoolAllocated.h>

#include <zrk/MemoryPool.h>

namespace zrk {

void* MemoryPoolAllocated::operator new(std::size_t size) noexcept {
  return MemoryPool::Allocate(size);
}

void MemoryPoolAllocated::operator delete(void* memory) noexcept {
  MemoryPool::Free(memory);
}

}  // namespace zrk
