#include <zrk/illustration/SbomTreeObserver.h>

#include <zrk/illustration/SbomInstance.h>

namespace zrk::illustration {

SbomTreeObserver::~SbomTreeObserver() = default;

void SbomTreeObserver::OnBeginUpdate() {}

void SbomTreeObserver::OnEndUpdate() {}

void SbomTreeObserver::OnDestroy() {}

void SbomTreeObserver::OnAddInstance(const du::SmartPtr<SbomInstance>&) {}

void SbomTreeObserver::OnRemoveInstance(const du::SmartPtr<SbomInstance>&) {}

void SbomTreeObserver::OnAddProperty(const du::SmartPtr<SbomInstance>&, const du::Symbol&, const du::Symbol&) {}

void SbomTreeObserver::OnRemoveProperty(const du::SmartPtr<SbomInstance>&, const du::Symbol&, const du::Symbol&) {}

void SbomTreeObserver::OnPropertyChanged(const du::SmartPtr<SbomInstance>&, const du::Symbol&, const du::Symbol&) {}

void SbomTreeObserver::OnPropertyGroupChanged(const du::SmartPtr<SbomInstance>&, const du::Symbol&) {}

}  // namespace zrk::illustration
