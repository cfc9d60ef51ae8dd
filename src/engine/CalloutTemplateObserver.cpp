#include "engine/CalloutTemplateObserver.h"

#include <zrk/Scene.h>
#include <zrk/View.h>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

void CalloutTemplateObserver::OnTemplateReplaced(
    const du::SmartPtr<zrk::illustration::TAnnotation>& /*callouttemplate*/) {
  if (!hostlayer::UsesTemplate(callout_)) return;
  if (const auto engine = link_->Take()) engine->CheckForTypeUpdate(callout_);
  RewriteText();
}

void CalloutTemplateObserver::OnTemplateModified(
    const du::SmartPtr<zrk::illustration::TAnnotation>& /*callouttemplate*/) {
  RewriteText();
}

void CalloutTemplateObserver::RewriteText() {
  const auto scene = callout_ ? callout_->GetScene() : nullptr;
  const auto engine = link_->Take();
  if (!scene || !engine) return;
  engine->SetCalloutText(callout_);
  if (const auto view = scene->GetView(0)) view->SetDirty(true);
}

}  // namespace zrcallouts
