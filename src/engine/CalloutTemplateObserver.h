#pragma once
// Watches the template of one callout and rewrites its label when the template is replaced or edited.

#include <zrannotations/Callout.h>
#include <zrk/illustration/CalloutTemplateObserver.h>

#include "engine/EngineLink.h"

namespace zrcallouts {

/// Held by the callout that it holds: the cycle ends with Callout::UnregisterTemplateObserver. Reaches the engine by a
/// link, because a template notification may come between the engine's end and the release of its templates.
class CalloutTemplateObserver final : public zrk::illustration::CalloutTemplateObserver {
public:
  CalloutTemplateObserver(const du::SmartPtr<zrannotations::Callout>& callout, const du::SmartPtr<EngineLink>& link)
      : callout_(callout), link_(link) {}

  [[nodiscard]] bool WantsThumbnails() const override { return false; }
  void OnTemplateReplaced(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate) override;
  void OnTemplateModified(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate) override;

private:
  void RewriteText();

  du::SmartPtr<zrannotations::Callout> callout_;
  du::SmartPtr<EngineLink> link_;
};

}  // namespace zrcallouts
