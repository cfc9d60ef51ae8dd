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
  engine_ = nullptr;
}

du::SmartPtr<Callouts> TakeEngine(Callouts* engine) {
  if (!engine || !engine->TryAddReference()) return {};
  du::SmartPtr<Callouts> held(engine);
  engine->RemoveReference();  // the smart pointer has a reference of its own now
  return held;
}

}  // namespace zrcallouts
