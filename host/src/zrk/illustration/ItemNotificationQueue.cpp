#include <zrk/illustration/ItemNotificationQueue.h>

#include <utility>

namespace zrk::illustration {

void ItemNotificationQueue::Push(ItemNotification notification) {
  using Kind = ItemNotification::Kind;
  const unsigned itemId = notification.itemId;
  if (notification.kind == Kind::Removed) {
    if (const auto content = mergeable_.find({Kind::ContentChanged, itemId}); content != mergeable_.end()) {
      entries_.erase(content->second);
    }
    for (const Kind kind : {Kind::Added, Kind::ContentChanged, Kind::Indicated}) mergeable_.erase({kind, itemId});
    entries_.emplace(next_++, std::move(notification));
    return;
  }
  const auto [place, isNew] = mergeable_.emplace(Key(notification.kind, itemId), next_);
  if (isNew) {
    try {
      entries_.emplace(next_, std::move(notification));
    } catch (...) {
      mergeable_.erase(place);  // both or neither
      throw;
    }
    ++next_;
    return;
  }
  ItemNotification& earlier = entries_.at(place->second);
  earlier.indicated = notification.indicated;
  earlier.added.merge(notification.added);
  earlier.removed.merge(notification.removed);
}

std::vector<ItemNotification> ItemNotificationQueue::Take() {
  std::vector<ItemNotification> notifications;
  notifications.reserve(entries_.size());
  for (auto& entry : entries_) notifications.push_back(std::move(entry.second));
  entries_.clear();
  mergeable_.clear();
  return notifications;
}

}  // namespace zrk::illustration
