#include <zrkapp/illustration/OrreryAppObserver.h>

namespace zrkapp::illustration {

OrreryAppObserver::~OrreryAppObserver() = default;

void OrreryAppObserver::OnStructureNew() {}

void OrreryAppObserver::OnStructureOpened() {}

void OrreryAppObserver::OnStructureClosed() {}

void OrreryAppObserver::OnStructureReplaced() {}

void OrreryAppObserver::OnStructureUpdated() {}

void OrreryAppObserver::OnStructurePropertiesChanged() {}

void OrreryAppObserver::OnPublishStateChanged() {}

}  // namespace zrkapp::illustration
