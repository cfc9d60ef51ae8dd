#pragma once

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk {

namespace illustration {
class ItemsList;
}

/// Something observed whose changes can be grouped: while an update is open, observers wait for the batch at its close.
/// Updates nest, also across threads; what is held back is up to the derived class. [any-thread]
class ZR_HOST_API Observable {
public:
  Observable();
  virtual ~Observable();
  Observable(const Observable&) = delete;
  Observable& operator=(const Observable&) = delete;

  /// Keeps an update open for its scope and closes it whichever way the scope is left.
  class ZR_HOST_API UpdateGroup {
  public:
    /// Holds the list counted; null makes a group that does nothing.
    explicit UpdateGroup(const du::SmartPtr<illustration::ItemsList>& observed);
    /// `observed` must outlive the group.
    explicit UpdateGroup(Observable& observed);
    ~UpdateGroup();
    UpdateGroup(const UpdateGroup&) = delete;
    UpdateGroup& operator=(const UpdateGroup&) = delete;

  private:
    du::SmartPtr<du::RefCounted> keepAlive_;
    Observable* observed_ = nullptr;
  };

  void BeginUpdate();
  /// Without an open update it does nothing.
  void EndUpdate();
  [[nodiscard]] bool IsUpdating() const;

protected:
  /// The outermost update was opened. Called with no lock held.
  virtual void OnUpdateBegun();
  /// The outermost update was closed: the place to deliver what was held back. Called with no lock held.
  virtual void OnUpdateEnded();

private:
  mutable dp::Mutex mutex_;
  unsigned depth_ ZR_GUARDED_BY(mutex_) = 0;
};

}  // namespace zrk
