#pragma once
// Progress of an automatic run on a terminal.

#include <zrk/AsyncEvent.h>

namespace zrfigure {

/// Keeps one line of standard error up to date while a run goes on, and wipes it at the end. Silent when not asked to
/// show anything. Called on the pool's thread.
class RunEvent final : public zrk::AsyncEvent {
public:
  explicit RunEvent(bool show) : show_(show) {}

  void Progress(unsigned char percent) override;
  void Complete() override;

private:
  const bool show_;
};

}  // namespace zrfigure
