#pragma once

#include <cstddef>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>
#include <zrk/Observable.h>
#include <zrk/ObserverList.h>

namespace zrk {

class AnnoSetTableObserver;

/// The world's table of annotation sets, as far as it is observed. [any-thread]
class ZR_HOST_API AnnoSetTable : public Object, public Observable {
public:
  AnnoSetTable();
  ~AnnoSetTable() override;

  void RegisterObserver(const du::SmartPtr<AnnoSetTableObserver>& observer);
  /// Never waits for a notification under way.
  void UnregisterObserver(const du::SmartPtr<AnnoSetTableObserver>& observer);
  [[nodiscard]] std::size_t GetObserverCount() const;
  /// Tells the observers that the table changed; outside an update it opens and closes one of its own. The observers
  /// of the world hear of it too when the table is the world's.
  void ChangeTable();

private:
  void OnUpdateBegun() override;
  void OnUpdateEnded() override;

  ObserverList<AnnoSetTableObserver> observers_;
};

}  // namespace zrk
