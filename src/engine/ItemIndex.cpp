// Idea: a callout is filed under the item number it was last seen with; the host keeps a journal of the callouts whose
// number changed, and only those are looked at again before a question is answered. When the journal has run over, or
// the host keeps none, every callout is looked at once.
// Cost: O(log n) an entry, removal, change and question, beside the answer itself and the compound callouts.
#include "engine/ItemIndex.h"

#include <zrannotations/Callout.h>

#include <algorithm>

#include "hostlayer/HostLayer.h"

namespace zrcallouts {

void ItemIndex::Insert(const CalloutPtr& callout) {
  const dp::MutexGuard guard(mutex_);
  if (hostlayer::IsCompound(callout)) {
    compounds_.insert(callout);
  } else {
    Entry& entry = entries_[callout.Get()];
    entry.callout = callout;
    File(entry);
  }
}

void ItemIndex::Erase(const CalloutPtr& callout) {
  const dp::MutexGuard guard(mutex_);
  compounds_.erase(callout);
  const auto found = entries_.find(callout.Get());
  if (found == entries_.end()) return;
  Unfile(found->second);
  entries_.erase(found);
}

void ItemIndex::Clear() {
  const dp::MutexGuard guard(mutex_);
  entries_.clear();
  carriers_.clear();
  compounds_.clear();
}

void ItemIndex::Find(std::uint32_t itemId, std::vector<CalloutPtr>& callouts) {
  const dp::MutexGuard guard(mutex_);
  TakeInChanges();
  const auto first = static_cast<std::ptrdiff_t>(callouts.size());
  if (const auto found = carriers_.find(itemId); found != carriers_.end()) {
    callouts.insert(callouts.end(), found->second.begin(), found->second.end());
  }
  const auto middle = static_cast<std::ptrdiff_t>(callouts.size());
  for (const auto& compound : compounds_) {
    if (hostlayer::CarriesItem(compound, itemId)) callouts.push_back(compound);
  }
  std::inplace_merge(callouts.begin() + first, callouts.begin() + middle, callouts.end());
}

bool ItemIndex::Contains(std::uint32_t itemId) {
  const dp::MutexGuard guard(mutex_);
  TakeInChanges();
  return carriers_.count(itemId) != 0 || std::any_of(compounds_.begin(), compounds_.end(), [&](const auto& compound) {
           return hostlayer::CarriesItem(compound, itemId);
         });
}

void ItemIndex::TakeInChanges() {
  std::vector<const zrannotations::Callout*> changed;
  std::uint64_t position = position_;
  if (hostlayer::ReadItemChanges(position, changed)) {
    for (const auto* address : changed) {
      const auto found = entries_.find(address);
      if (found != entries_.end()) File(found->second);
    }
  } else {
    for (auto& [address, entry] : entries_) File(entry);
  }
  position_ = position;  // only now: changes that there was no memory for are read again
}

void ItemIndex::File(Entry& entry) {
  const std::uint32_t itemId = hostlayer::ItemIdOf(entry.callout).value_or(0);
  if (itemId == entry.itemId) return;
  if (itemId != 0) carriers_[itemId].insert(entry.callout);
  Unfile(entry);
  entry.itemId = itemId;
}

void ItemIndex::Unfile(const Entry& entry) {
  const auto found = carriers_.find(entry.itemId);
  if (found == carriers_.end()) return;
  found->second.erase(entry.callout);
  if (found->second.empty()) carriers_.erase(found);
}

}  // namespace zrcallouts
