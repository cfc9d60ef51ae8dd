#include <du/Symbol.h>

#include <mutex>
#include <set>
#include <shared_mutex>
#include <string_view>

namespace du {

namespace {

// Entries are never freed and the table itself is never destroyed: symbols are compared and read until the very end of
// the process, also by destructors of static objects.
struct Table {
  std::shared_mutex mutex;
  std::set<std::string, std::less<>> entries;
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
