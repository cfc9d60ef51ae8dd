#include "entry/DestroyCalloutsTask.h"

#include "hostlayer/HostLayer.h"

namespace zrcallouts {

void DestroyCalloutsTask::Take(InsetTable& insetTable, CalloutSet& callouts) {
  insetTable_.swap(insetTable);
  callouts_.swap(callouts);
}

void DestroyCalloutsTask::Run() {
  const du::SmartPtr<zrannotations::Inset> noInset;
  for (const auto& [inset, callouts] : insetTable_) {
    // Position 0 only, whichever leader shows the inset.
    for (const auto& callout : callouts) {
      if (callout) callout->SetInsetAtPos(noInset, 0);
    }
    if (inset && !hostlayer::IsTemplateReleased(inset)) inset->ReleaseInsetTemplate();
  }
  for (const auto& callout : callouts_) {
    if (!callout) continue;
    callout->ReleaseCalloutTemplate();
    callout->UnregisterTemplateObserver();
  }
}

}  // namespace zrcallouts
