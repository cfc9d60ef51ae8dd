#pragma once
// The way back to the engine for objects that may outlive it, such as template observers. Cut by Callouts::Destroy.

#include <dp/SpinLock.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

namespace zrcallouts {

class Callouts;

/// Hands out counted references to a live engine, from any thread. [any-thread]
class EngineLink final : public virtual du::RefCounted {
public:
  explicit EngineLink(Callouts* engine) : engine_(engine) {}

  /// The engine, held; empty once the link is cut or the engine is on its way out.
  [[nodiscard]] du::SmartPtr<Callouts> Take();
  [[nodiscard]] bool IsCut();
  /// From now on the engine has no picks outstanding either.
  void Cut();
  /// Counts one more outstanding pick of the engine; false, and not counted, once the link is cut.
  [[nodiscard]] bool BeginPick();
  /// Counts one less. Nothing once the link is cut.
  void EndPick();

private:
  dp::SpinLock lock_;
  Callouts* engine_;
};

/// A counted reference to an engine whose count has not reached zero; empty for null or a dying engine.
[[nodiscard]] du::SmartPtr<Callouts> TakeEngine(Callouts* engine);

}  // namespace zrcallouts
