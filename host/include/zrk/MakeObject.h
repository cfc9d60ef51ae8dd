#pragma once

#include <utility>

#include <du/SmartPtr.h>
#include <zrk/MemoryPool.h>

namespace zrk {

/// Makes a counted object for the host or an application. Injected memory faults do not reach it or what its
/// constructor allocates; null only when memory really ran out.
template <class T, class... Args>
[[nodiscard]] du::SmartPtr<T> MakeObject(Args&&... args) {
  const MemoryPool::InjectionPause pause;
  return du::SmartPtr<T>(new T(std::forward<Args>(args)...));
}

}  // namespace zrk
