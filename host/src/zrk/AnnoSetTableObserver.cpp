#include <zrk/AnnoSetTableObserver.h>

namespace zrk {

AnnoSetTableObserver::~AnnoSetTableObserver() = default;

void AnnoSetTableObserver::OnBeginChange() {}

void AnnoSetTableObserver::OnEndChange() {}

void AnnoSetTableObserver::OnTableChanged() {}

}  // namespace zrk
