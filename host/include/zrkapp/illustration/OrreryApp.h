#pragma once

#include <cstddef>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>
#include <zrk/ObserverList.h>

namespace zrk::illustration {
class SbomTree;
}

namespace zrkapp::illustration {

class OrreryAppObserver;

/// The authoring application as the process sees it. Thread-safe.
class ZR_HOST_API OrreryApp : public zrk::Object {
public:
  OrreryApp();
  ~OrreryApp() override;

  /// Null when no application is set.
  [[nodiscard]] static du::SmartPtr<OrreryApp> GetOrreryApp();
  static void SetOrreryApp(const du::SmartPtr<OrreryApp>& app);

  /// The structure the application works on; null when there is none.
  [[nodiscard]] du::SmartPtr<zrk::illustration::SbomTree> GetSbomTree() const;
  void SetSbomTree(const du::SmartPtr<zrk::illustration::SbomTree>& tree);
  [[nodiscard]] bool IsBatchPublishing() const;
  void SetBatchPublishing(bool on);

  void RegisterObserver(const du::SmartPtr<OrreryAppObserver>& observer);
  /// Never waits for a notification under way.
  void UnregisterObserver(const du::SmartPtr<OrreryAppObserver>& observer);
  [[nodiscard]] std::size_t GetObserverCount() const;
  /// Sends the notification of that place in OrreryAppObserver, counted from 0; others are ignored.
  void Fire(unsigned which);

private:
  mutable dp::Mutex mutex_;
  du::SmartPtr<zrk::illustration::SbomTree> tree_ ZR_GUARDED_BY(mutex_);
  bool batchPublishing_ ZR_GUARDED_BY(mutex_) = false;
  zrk::ObserverList<OrreryAppObserver> observers_;
};

}  // namespace zrkapp::illustration
