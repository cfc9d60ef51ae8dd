#include "engine/AnnoSetTableObserver.h"

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

void AnnoSetTableObserver::OnBeginChange() {
  changed_ = false;
}

void AnnoSetTableObserver::OnEndChange() {
  if (engine_ && changed_) engine_->RegenerateCalloutLabels();
  changed_ = false;
}

void AnnoSetTableObserver::OnTableChanged() {
  changed_ = true;
}

}  // namespace zrcallouts
