#include <zrkapp/illustration/OrreryApp.h>

#include <array>

#include <zrk/illustration/SbomTree.h>
#include <zrkapp/illustration/OrreryAppObserver.h>

namespace zrkapp::illustration {

namespace {

/// The application of the process. Never destroyed: it may be asked for while static objects die.
struct CurrentApp {
  dp::Mutex mutex;
  du::SmartPtr<OrreryApp> app ZR_GUARDED_BY(mutex);
};

CurrentApp& GetCurrentApp() {
  static CurrentApp* const current = new CurrentApp;
  return *current;
}

}  // namespace

OrreryApp::OrreryApp() = default;

OrreryApp::~OrreryApp() = default;

du::SmartPtr<OrreryApp> OrreryApp::GetOrreryApp() {
  CurrentApp& current = GetCurrentApp();
  const dp::MutexGuard guard(current.mutex);
  return current.app;
}

void OrreryApp::SetOrreryApp(const du::SmartPtr<OrreryApp>& app) {
  du::SmartPtr<OrreryApp> previous = app;
  CurrentApp& current = GetCurrentApp();
  const dp::MutexGuard guard(current.mutex);
  current.app.Swap(previous);
}

du::SmartPtr<zrk::illustration::SbomTree> OrreryApp::GetSbomTree() const {
  const dp::MutexGuard guard(mutex_);
  return tree_;
}

void OrreryApp::SetSbomTree(const du::SmartPtr<zrk::illustration::SbomTree>& tree) {
  du::SmartPtr<zrk::illustration::SbomTree> previous = tree;
  const dp::MutexGuard guard(mutex_);
  tree_.Swap(previous);
}

bool OrreryApp::IsBatchPublishing() const {
  const dp::MutexGuard guard(mutex_);
  return batchPublishing_;
}

void OrreryApp::SetBatchPublishing(bool on) {
  const dp::MutexGuard guard(mutex_);
  batchPublishing_ = on;
}

void OrreryApp::RegisterObserver(const du::SmartPtr<OrreryAppObserver>& observer) {
  observers_.Register(observer);
}

void OrreryApp::UnregisterObserver(const du::SmartPtr<OrreryAppObserver>& observer) {
  observers_.Unregister(observer);
}

std::size_t OrreryApp::GetObserverCount() const {
  return observers_.GetCount();
}

void OrreryApp::Fire(unsigned which) {
  using Notification = void (OrreryAppObserver::*)();
  static constexpr std::array<Notification, 7> kNotifications = {
      &OrreryAppObserver::OnStructureNew,       &OrreryAppObserver::OnStructureOpened,
      &OrreryAppObserver::OnStructureClosed,    &OrreryAppObserver::OnStructureReplaced,
      &OrreryAppObserver::OnStructureUpdated,   &OrreryAppObserver::OnStructurePropertiesChanged,
      &OrreryAppObserver::OnPublishStateChanged};
  if (which >= kNotifications.size()) return;
  for (const auto& observer : observers_.Copy()) (observer.Get()->*kNotifications[which])();
}

}  // namespace zrkapp::illustration
