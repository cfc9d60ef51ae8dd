#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/illustration/SbomInstance.h>

namespace zrk::illustration {

/// One notification of an items list, ready to be sent.
struct ItemNotification {
  enum class Kind { Added, Removed, ContentChanged, Indicated, ListCleared };
  Kind kind = Kind::Added;
  unsigned itemId = 0;
  bool indicated = false;
  std::set<du::SmartPtr<SbomInstance>> added;
  std::set<du::SmartPtr<SbomInstance>> removed;
};

/// The notifications held back by an update group, in order and merged by kind and item: content changes of one item
/// become one with the unions of their sets, a removal cancels the content changes before it. Nothing merges across a
/// removal of the item, so that an item that comes back is announced again. Not thread-safe.
class ZR_HOST_API ItemNotificationQueue {
public:
  void Push(ItemNotification notification);
  /// Empties the queue.
  std::vector<ItemNotification> Take();

private:
  using Key = std::pair<ItemNotification::Kind, unsigned>;
  std::map<std::size_t, ItemNotification> entries_;
  std::map<Key, std::size_t> mergeable_;
  std::size_t next_ = 0;
};

}  // namespace zrk::illustration
