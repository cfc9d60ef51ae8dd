#include <zrk/illustration/ItemsListObserver.h>

#include <zrk/illustration/SbomInstance.h>

namespace zrk::illustration {

ItemsListObserver::~ItemsListObserver() = default;

void ItemsListObserver::OnItemAdded(unsigned) {}

void ItemsListObserver::OnItemRemoved(unsigned) {}

void ItemsListObserver::OnItemContentChanged(unsigned, const std::set<du::SmartPtr<SbomInstance>>&,
                                             const std::set<du::SmartPtr<SbomInstance>>&) {}

void ItemsListObserver::OnItemIndicated(unsigned, bool) {}

void ItemsListObserver::OnListCleared() {}

}  // namespace zrk::illustration
