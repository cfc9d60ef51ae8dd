#include <zrk/AnnoSetTable.h>

#include <zrk/AnnoSetTableObserver.h>
#include <zrk/World.h>

namespace zrk {

AnnoSetTable::AnnoSetTable() = default;

AnnoSetTable::~AnnoSetTable() = default;

void AnnoSetTable::RegisterObserver(const du::SmartPtr<AnnoSetTableObserver>& observer) {
  observers_.Register(observer);
}

void AnnoSetTable::UnregisterObserver(const du::SmartPtr<AnnoSetTableObserver>& observer) {
  observers_.Unregister(observer);
}

std::size_t AnnoSetTable::GetObserverCount() const {
  return observers_.GetCount();
}

void AnnoSetTable::ChangeTable() {
  const UpdateGroup group(*this);
  for (const auto& observer : observers_.Copy()) observer->OnTableChanged();
  const du::SmartPtr<World> world = World::GetWorld();
  if (world && world->GetAnnoSetTable().Get() == this) world->NotifyAnnoSetTableChanged();
}

void AnnoSetTable::OnUpdateBegun() {
  for (const auto& observer : observers_.Copy()) observer->OnBeginChange();
}

void AnnoSetTable::OnUpdateEnded() {
  for (const auto& observer : observers_.Copy()) observer->OnEndChange();
}

}  // namespace zrk
