#include "engine/EngineLink.h"

#include "engine/SpinGuard.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

du::SmartPtr<Callouts> EngineLink::Take() {
  const SpinGuard guard(lock_);
  return TakeEngine(engine_);
}

bool EngineLink::IsCut() {
  const SpinGuard guard(lock_);
  return engine_ == nullptr;
}

void EngineLink::Cut() {
  const SpinGuard guard(lock_);
  if (engine_) engine_->pickRequestCount_ = 0;
  engine_ = nullptr;
}

// Counted under the link's lock, not the engine's: an answer may come on a thread that reads the engine, and an upgrade
// of its lock can deadlock. With the link cut nobody counts any more, so the count is exact whoever answers when.
bool EngineLink::BeginPick() {
  const SpinGuard guard(lock_);
  if (!engine_) return false;
  ++engine_->pickRequestCount_;
  return true;
}

void EngineLink::EndPick() {
  const SpinGuard guard(lock_);
  if (engine_) --engine_->pickRequestCount_;
}

du::SmartPtr<Callouts> TakeEngine(Callouts* engine) {
  if (!engine || !engine->TryAddReference()) return {};
  du::SmartPtr<Callouts> held(engine);
  engine->RemoveReference();  // the smart pointer has a reference of its own now
  return held;
}

}  // namespace zrcallouts
