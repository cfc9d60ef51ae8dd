#include "engine/WorldObserver.h"

#include "engine/EngineLink.h"
#include "engine/SpinGuard.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

dp::SpinLock& WorldObserver::GuardLock() {
  static dp::SpinLock lock;
  return lock;
}

void WorldObserver::ClearEngine() {
  const SpinGuard guard(GuardLock());
  engine_ = nullptr;
}

// The guard is held only to take a counted reference: teardown holds the engine's write lock when it wants the guard,
// so calling the engine (which read-locks) with the guard held would deadlock two threads. A destroyed engine that is
// still held has empty containers, so the late call does nothing.
void WorldObserver::OnLanguageChanged() {
  du::SmartPtr<Callouts> engine;
  {
    const SpinGuard guard(GuardLock());
    engine = TakeEngine(engine_);
  }
  if (engine) engine->OnLanguageChanged();
}

}  // namespace zrcallouts
