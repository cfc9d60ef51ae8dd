#pragma once
// Watches one inset that callouts show.

#include <zrannotations/InsetObserver.h>

namespace zrcallouts {

class Callouts;

/// Owned by the engine and the inset. It keeps the base's reactions: callouts learn of changed bounds by their own
/// slots.
class InsetObserver final : public zrannotations::InsetObserver {
public:
  explicit InsetObserver(Callouts* engine) : engine_(engine) {}

  void ClearEngine() { engine_ = nullptr; }
  [[nodiscard]] Callouts* GetEngine() const { return engine_; }

private:
  Callouts* engine_;
};

}  // namespace zrcallouts
