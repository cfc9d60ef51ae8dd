#pragma once

#include <dp/Mutex.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

namespace zrk {

/// A link back to a counted object that does not keep it alive, held by value and set anew as the object's owner
/// changes. The target's owner, or the target's destructor, clears it; Get answers null from then on, and already while
/// the target is being destroyed. [any-thread]
template <class T>
class BackLink {
public:
  BackLink() = default;
  BackLink(const BackLink&) = delete;
  BackLink& operator=(const BackLink&) = delete;

  /// Points the link at `target`, which may be under construction; null empties it. Takes no reference.
  void Set(T* target) {
    const dp::MutexGuard guard(mutex_);
    target_ = target;
    counted_ = target;
  }

  /// Points the link at `target` unless it points somewhere already; says whether it does so now.
  bool SetIfEmpty(T* target) {
    const dp::MutexGuard guard(mutex_);
    if (target_) return false;
    target_ = target;
    counted_ = target;
    return true;
  }

  /// Empties the link when it points at `target`; any other target stays.
  void Clear(const T* target) {
    const dp::MutexGuard guard(mutex_);
    if (target_ != target) return;
    target_ = nullptr;
    counted_ = nullptr;
  }

  /// The target with a reference of its own, or null when there is none or its last reference is gone.
  [[nodiscard]] du::SmartPtr<T> Get() const {
    const dp::MutexGuard guard(mutex_);
    if (!target_ || !counted_->TryAddReference()) return nullptr;
    return du::SmartPtr<T>::Adopt(target_);
  }

  /// Whether Get would have answered with a target just now.
  [[nodiscard]] bool HasTarget() const {
    const dp::MutexGuard guard(mutex_);
    return target_ && counted_->GetReferenceCount() > 0;
  }

private:
  mutable dp::Mutex mutex_;
  T* target_ ZR_GUARDED_BY(mutex_) = nullptr;
  // Kept beside the target: the way to the virtual base is closed once the target's destructor runs.
  const du::RefCounted* counted_ ZR_GUARDED_BY(mutex_) = nullptr;
};

}  // namespace zrk
