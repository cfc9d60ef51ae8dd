#include <zrk/illustration/CalloutTemplateObserver.h>

#include <zrk/illustration/TAnnotation.h>

namespace zrk::illustration {

CalloutTemplateObserver::~CalloutTemplateObserver() = default;

bool CalloutTemplateObserver::WantsThumbnails() const {
  return true;
}

void CalloutTemplateObserver::OnTemplateReplaced(const du::SmartPtr<TAnnotation>&) {}

void CalloutTemplateObserver::OnTemplateModified(const du::SmartPtr<TAnnotation>&) {}

void CalloutTemplateObserver::OnThumbnailsLoaded() {}

}  // namespace zrk::illustration
