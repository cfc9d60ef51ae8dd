#include <zrannotations/ItemNumberJournal.h>

#include <array>

#include <dp/Mutex.h>

namespace zrannotations {

namespace {

struct Journal {
  dp::Mutex mutex;
  std::array<const Callout*, 4096> last ZR_GUARDED_BY(mutex){};
  std::uint64_t end ZR_GUARDED_BY(mutex) = 0;
};

Journal& GetJournal() {
  static Journal journal;
  return journal;
}

}  // namespace

void ItemNumberJournal::Record(const Callout& callout) {
  Journal& journal = GetJournal();
  const dp::MutexGuard guard(journal.mutex);
  journal.last[journal.end++ % journal.last.size()] = &callout;
}

bool ItemNumberJournal::ReadFrom(std::uint64_t& position, std::vector<const Callout*>& changed) {
  Journal& journal = GetJournal();
  const dp::MutexGuard guard(journal.mutex);
  const std::uint64_t from = position;
  position = journal.end;
  if (journal.end - from > journal.last.size()) return false;
  for (std::uint64_t i = from; i < journal.end; ++i) changed.push_back(journal.last[i % journal.last.size()]);
  return true;
}

}  // namespace zrannotations
