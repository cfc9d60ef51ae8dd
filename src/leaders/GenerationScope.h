#pragma once
// While one is open, changes of item groups come from the generator, which makes the leaders itself.

#include <du/SmartPtr.h>

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

/// Nestable, from any thread; an empty engine makes it do nothing.
class GenerationScope final {
public:
  explicit GenerationScope(const du::SmartPtr<Callouts>& engine) : engine_(engine) {
    if (engine_) engine_->BeginGeneration();
  }
  ~GenerationScope() {
    if (engine_) engine_->EndGeneration();
  }
  GenerationScope(const GenerationScope&) = delete;
  GenerationScope& operator=(const GenerationScope&) = delete;

private:
  const du::SmartPtr<Callouts> engine_;
};

}  // namespace zrcallouts
