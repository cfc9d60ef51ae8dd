#pragma once
// Watches the world for language changes, which may be reported on another thread while the engine is torn down.

#include <dp/SpinLock.h>
#include <zrk/WorldObserver.h>

namespace zrcallouts {

class Callouts;

/// Owned by the engine and the world. Its engine pointer is read and cleared under the observer guard lock only.
class WorldObserver final : public zrk::WorldObserver {
public:
  explicit WorldObserver(Callouts* engine) : engine_(engine) {}

  /// The one lock of the process that guards the engine pointers of all world observers. Not re-entrant.
  static dp::SpinLock& GuardLock();

  void ClearEngine();
  void OnLanguageChanged() override;

private:
  Callouts* engine_;
};

}  // namespace zrcallouts
