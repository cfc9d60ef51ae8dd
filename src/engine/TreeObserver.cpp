#include "engine/TreeObserver.h"

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

void TreeObserver::OnBeginUpdate() {
  changed_ = false;
}

void TreeObserver::OnEndUpdate() {
  if (engine_ && changed_) engine_->RegenerateCalloutLabels();
  changed_ = false;
}

void TreeObserver::OnDestroy() {
  engine_ = nullptr;
  tree_.Reset();
}

void TreeObserver::OnPropertyChanged(const du::SmartPtr<zrk::illustration::SbomInstance>& /*instance*/,
                                     const du::Symbol& /*group*/, const du::Symbol& /*name*/) {
  changed_ = true;
}

void TreeObserver::OnPropertyGroupChanged(const du::SmartPtr<zrk::illustration::SbomInstance>& /*instance*/,
                                          const du::Symbol& /*group*/) {
  changed_ = true;
}

}  // namespace zrcallouts
