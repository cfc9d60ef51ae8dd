#pragma once

#include <cstdint>
#include <vector>

#include <du/Export.h>

namespace zrannotations {

class Callout;

/// Which callouts got another item number, in the order of the changes. Process-wide; remembers the last few thousand.
/// [any-thread]
class ZR_HOST_API ItemNumberJournal final {
public:
  ItemNumberJournal() = delete;

  /// Notes the change after it was made.
  static void Record(const Callout& callout);
  /// Appends the callouts changed since `position` and moves it to the end; a first reader starts at 0. They may be
  /// gone already: compare the addresses, do not follow them. False, with nothing appended, when some are forgotten.
  static bool ReadFrom(std::uint64_t& position, std::vector<const Callout*>& changed);
};

}  // namespace zrannotations
