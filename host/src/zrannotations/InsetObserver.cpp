#include <zrannotations/InsetObserver.h>

#include <zrannotations/Inset.h>

namespace zrannotations {

InsetObserver::~InsetObserver() = default;

void InsetObserver::OnInsetBoundsChanged(const du::SmartPtr<Inset>&) {}

void InsetObserver::OnInsetCaptionChanged(const du::SmartPtr<Inset>&) {}

void InsetObserver::OnInsetVisibilityChanged(const du::SmartPtr<Inset>&, bool) {}

}  // namespace zrannotations
