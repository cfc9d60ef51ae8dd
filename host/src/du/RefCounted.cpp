#include <du/RefCounted.h>

namespace du {

namespace {

std::atomic<long> liveObjects{0};

}  // namespace

RefCounted::RefCounted() noexcept {
  liveObjects.fetch_add(1, std::memory_order_relaxed);
}

RefCounted::RefCounted(const RefCounted&) noexcept : RefCounted() {}

RefCounted& RefCounted::operator=(const RefCounted&) noexcept {
  return *this;
}

RefCounted::~RefCounted() {
  liveObjects.fetch_sub(1, std::memory_order_relaxed);
}

bool RefCounted::ZeroReferenceCountHook() const {
  return true;
}

bool RefCounted::TryAddReference() const noexcept {
  long count = count_.load(std::memory_order_relaxed);
  while (count > 0) {
    if (count_.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return true;
  }
  return false;
}

unsigned RefCounted::GetReferenceCount() const noexcept {
  return static_cast<unsigned>(count_.load(std::memory_order_relaxed));
}

long RefCounted::GetLiveObjectCount() noexcept {
  return liveObjects.load(std::memory_order_relaxed);
}

}  // namespace du
