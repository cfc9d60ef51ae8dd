#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include <dp/Mutex.h>
#include <du/SmartPtr.h>

namespace zrk {

/// Registered observers in the order of registration, held counted. Thread-safe; registering and unregistering cost
/// O(log n). A notification walks the copy that Copy returns, so unregistering never waits for one under way.
template <class T>
class ObserverList {
public:
  /// Appends the observer; null and an observer that is already registered change nothing.
  bool Register(const du::SmartPtr<T>& observer) {
    if (!observer) return false;
    const dp::MutexGuard guard(mutex_);
    const auto [place, isNew] = places_.emplace(observer.Get(), next_);
    if (!isNew) return false;
    try {
      observers_.emplace(next_, observer);
    } catch (...) {
      places_.erase(place);  // both or neither
      throw;
    }
    ++next_;
    return true;
  }

  /// Takes the observer out; false when it is not registered.
  bool Unregister(const du::SmartPtr<T>& observer) {
    du::SmartPtr<T> released;
    const dp::MutexGuard guard(mutex_);
    const auto place = places_.find(observer.Get());
    if (place == places_.end()) return false;
    const auto entry = observers_.find(place->second);
    released = entry->second;
    observers_.erase(entry);
    places_.erase(place);
    return true;
  }

  [[nodiscard]] std::vector<du::SmartPtr<T>> Copy() const {
    const dp::MutexGuard guard(mutex_);
    std::vector<du::SmartPtr<T>> result;
    result.reserve(observers_.size());
    for (const auto& entry : observers_) result.push_back(entry.second);
    return result;
  }

  [[nodiscard]] std::size_t GetCount() const {
    const dp::MutexGuard guard(mutex_);
    return observers_.size();
  }

private:
  mutable dp::Mutex mutex_;
  std::uint64_t next_ ZR_GUARDED_BY(mutex_) = 0;
  std::map<std::uint64_t, du::SmartPtr<T>> observers_ ZR_GUARDED_BY(mutex_);
  std::unordered_map<const T*, std::uint64_t> places_ ZR_GUARDED_BY(mutex_);  // never walked
};

}  // namespace zrk
