#pragma once

#include <cstddef>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>
#include <zrk/Observable.h>
#include <zrk/ObserverList.h>

namespace zrk {

class BaseTreeObserver;

namespace illustration {

/// A structure tree as far as its observers are concerned.
class ZR_HOST_API BaseTree : public Object, public Observable {
public:
  BaseTree();
  ~BaseTree() override;

  /// Takes the observer out; harmless when it is not registered. Never waits for a notification under way.
  void UnregisterObserver(const du::SmartPtr<BaseTreeObserver>& observer);
  [[nodiscard]] std::size_t GetObserverCount() const;

protected:
  ObserverList<BaseTreeObserver> observers_;
};

}  // namespace illustration
}  // namespace zrk
