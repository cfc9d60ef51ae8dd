#pragma once
// Scope of a held spin lock.

#include <dp/SpinLock.h>

namespace zrcallouts {

class SpinGuard final {
public:
  explicit SpinGuard(dp::SpinLock& lock) : lock_(lock) { lock_.Lock(); }
  ~SpinGuard() { lock_.Unlock(); }
  SpinGuard(const SpinGuard&) = delete;
  SpinGuard& operator=(const SpinGuard&) = delete;

private:
  dp::SpinLock& lock_;
};

}  // namespace zrcallouts
