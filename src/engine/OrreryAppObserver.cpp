#include "engine/OrreryAppObserver.h"

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

void OrreryAppObserver::Regenerate() {
  if (engine_) engine_->RegenerateCalloutLabels();
}

}  // namespace zrcallouts
