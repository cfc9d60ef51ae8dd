#include "engine/InsetObserver.h"

#include <zrannotations/Inset.h>

#include <utility>

#include "engine/EngineLink.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

InsetObserver::InsetObserver(du::SmartPtr<EngineLink> link) : link_(std::move(link)) {}

InsetObserver::~InsetObserver() = default;

void InsetObserver::OnInsetBoundsChanged(const du::SmartPtr<zrannotations::Inset>& inset) {
  PassOn(inset);
}

void InsetObserver::OnInsetVisibilityChanged(const du::SmartPtr<zrannotations::Inset>& inset, bool /*visible*/) {
  PassOn(inset);
}

void InsetObserver::PassOn(const du::SmartPtr<zrannotations::Inset>& inset) {
  const auto engine = cleared_ ? du::SmartPtr<Callouts>() : link_->Take();
  if (engine) engine->OnInsetChanged(inset);
}

}  // namespace zrcallouts
