#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

#include <du/RefCounted.h>

namespace du {

/// Counted pointer to a RefCounted object, which carries the count itself: any number of SmartPtr made from one plain
/// pointer share it. `T` may be incomplete where a SmartPtr is only declared, and must be complete where one is copied
/// or destroyed. Objects on the stack must never meet a SmartPtr, nor may an object that is still under construction.
template <class T>
class SmartPtr {
public:
  SmartPtr() noexcept = default;
  SmartPtr(std::nullptr_t) noexcept {}
  /// Takes one reference.
  SmartPtr(T* object) : object_(object) { Add(object_); }
  SmartPtr(const SmartPtr& other) : object_(other.object_) { Add(object_); }
  SmartPtr(SmartPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  /// Up-cast.
  template <class U>
  requires std::is_convertible_v<U*, T*> SmartPtr(const SmartPtr<U>& other) : object_(other.Get()) { Add(object_); }
  /// Up-cast that takes the reference along.
  template <class U>
  requires std::is_convertible_v<U*, T*> SmartPtr(SmartPtr<U>&& other)
  noexcept : object_(other.Detach()) {}
  ~SmartPtr() { Release(object_); }

  SmartPtr& operator=(const SmartPtr& other) { return *this = other.object_; }
  SmartPtr& operator=(SmartPtr&& other) noexcept {
    if (this != &other) Release(std::exchange(object_, std::exchange(other.object_, nullptr)));
    return *this;
  }
  /// The same object: nothing happens. Otherwise the new object gains its reference before the old one loses it, and
  /// this pointer has its new value before the old object's destructor can look at it.
  SmartPtr& operator=(T* object) {
    if (object == object_) return *this;
    Add(object);
    Release(std::exchange(object_, object));
    return *this;
  }

  [[nodiscard]] T* Get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  /// Takes over a reference that the caller holds on `object`.
  [[nodiscard]] static SmartPtr Adopt(T* object) noexcept {
    SmartPtr adopted;
    adopted.object_ = object;
    return adopted;
  }
  /// Becomes empty; the reference is the caller's from now on.
  [[nodiscard]] T* Detach() noexcept { return std::exchange(object_, nullptr); }

  void Reset() { Release(std::exchange(object_, nullptr)); }
  void Swap(SmartPtr& other) noexcept { std::swap(object_, other.object_); }

private:
  static void Add(T* object) noexcept {
    if (object) object->AddReference();
  }
  static void Release(T* object) noexcept {
    if (object) object->RemoveReference();
  }

  T* object_ = nullptr;
};

template <class T, class U>
[[nodiscard]] bool operator==(const SmartPtr<T>& left, const SmartPtr<U>& right) noexcept {
  return left.Get() == right.Get();
}

template <class T, class U>
[[nodiscard]] bool operator!=(const SmartPtr<T>& left, const SmartPtr<U>& right) noexcept {
  return left.Get() != right.Get();
}

/// Order by object address.
template <class T>
[[nodiscard]] bool operator<(const SmartPtr<T>& left, const SmartPtr<T>& right) noexcept {
  return std::less<T*>()(left.Get(), right.Get());
}

/// Down-cast without a run-time check; empty stays empty. Does not compile from a virtual base: use DynamicCast there.
template <class T, class U>
[[nodiscard]] SmartPtr<T> StaticCast(const SmartPtr<U>& pointer) {
  return SmartPtr<T>(static_cast<T*>(pointer.Get()));
}

/// Cast with a run-time type test; null when the object is of another kind.
template <class T, class U>
[[nodiscard]] SmartPtr<T> DynamicCast(const SmartPtr<U>& pointer) {
  return SmartPtr<T>(dynamic_cast<T*>(pointer.Get()));
}

}  // namespace du
