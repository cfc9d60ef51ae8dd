#pragma once
// The automatic run as a job of the host's task pool.

#include <vector>

#include <du/SmartPtr.h>
#include <du/Task.h>

#include "zrcallouts/CalloutGenerator.h"

namespace zrcallouts {

/// Holds what the run needs until it is over. The event, if any, is completed exactly once, also when memory runs out.
class CreateCalloutsTask final : public du::Task {
public:
  CreateCalloutsTask(const du::SmartPtr<Callouts>& engine, CalloutGenerator::Selection&& selection,
                     const du::SmartPtr<zrk::AsyncEvent>& event);
  ~CreateCalloutsTask() override;

  void Run() override;

private:
  du::SmartPtr<Callouts> engine_;
  CalloutGenerator::Selection selection_;
  du::SmartPtr<zrk::AsyncEvent> event_;
};

}  // namespace zrcallouts
