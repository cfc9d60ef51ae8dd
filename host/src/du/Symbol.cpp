#include <du/Symbol.h>

#include <functional>
#include <mutex>
#include <shared_mutex>
#include <string_view>
#include <unordered_set>

namespace du {

namespace {

// Entries are never freed and the table itself is never destroyed: symbols are compared and read until the very end of
// the process, also by destructors of static objects.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

struct Table {
  std::shared_mutex mutex;
  std::unordered_set<std::string, TextHash, std::equal_to<>> entries;  // never walked
};

Table& GetTable() {
  static Table* table = new Table;
  return *table;
}

const std::string* Intern(std::string_view text) {
  if (text.empty()) return nullptr;
  Table& table = GetTable();
  {
    const std::shared_lock lock(table.mutex);
    const auto found = table.entries.find(text);
    if (found != table.entries.end()) return &*found;
  }
  const std::unique_lock lock(table.mutex);
  return &*table.entries.emplace(text).first;
}

}  // namespace

constinit const Symbol Symbol::EMPTY;

Symbol::Symbol(const char* text) : entry_(text ? Intern(text) : nullptr) {}

Symbol::Symbol(const std::string& text) : entry_(Intern(text)) {}

const std::string& Symbol::GetString() const {
  static const std::string* empty = new std::string;
  return entry_ ? *entry_ : *empty;
}

}  // namespace du
