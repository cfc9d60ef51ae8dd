#pragma once
// The registered callouts by item number, so that asking for an item's callouts does not walk all of them. Owned by the
// engine, which enters and removes callouts along with its set.

#include <cstdint>
#include <set>
#include <unordered_map>
#include <vector>

#include <dp/Mutex.h>
#include <du/SmartPtr.h>

namespace zrannotations {
class Callout;
}

namespace zrcallouts {

/// Answers with the item numbers of this moment: changes that the host has noted since the last question are taken in
/// first. Guarded by a lock of its own, the innermost one, so that a query under the engine's read lock may bring it up
/// to date. [any-thread]
class ItemIndex final {
public:
  using CalloutPtr = du::SmartPtr<zrannotations::Callout>;

  void Insert(const CalloutPtr& callout);
  void Erase(const CalloutPtr& callout);
  void Clear();
  /// Appends the callouts that carry the item, in address order. Number 0 stands for no item: nobody carries it.
  void Find(std::uint32_t itemId, std::vector<CalloutPtr>& callouts);
  /// Whether there is any.
  [[nodiscard]] bool Contains(std::uint32_t itemId);

private:
  struct Entry {
    CalloutPtr callout;
    std::uint32_t itemId = 0;  // filed under this number; 0: without an item
  };

  void TakeInChanges() ZR_REQUIRES(mutex_);
  void File(Entry& entry) ZR_REQUIRES(mutex_);
  void Unfile(const Entry& entry) ZR_REQUIRES(mutex_);

  dp::Mutex mutex_;
  // Without order: entries are looked up, and their order decides nothing where all are looked at again.
  std::unordered_map<const zrannotations::Callout*, Entry> entries_ ZR_GUARDED_BY(mutex_);
  std::unordered_map<std::uint32_t, std::set<CalloutPtr>> carriers_ ZR_GUARDED_BY(mutex_);
  std::set<CalloutPtr> compounds_ ZR_GUARDED_BY(mutex_);  // their members change unseen, so they are asked each time
  std::uint64_t position_ ZR_GUARDED_BY(mutex_) = 0;      // up to where the host's changes are taken in
};

}  // namespace zrcallouts
