#pragma once

#include <string>
#include <vector>

#include <du/Export.h>

namespace du {

/// The process-wide trace: keeps the latest entries in memory until they are taken. [any-thread]
class ZR_HOST_API Tracer {
public:
  struct Entry {
    int level;
    std::string module;
    std::string category;
    std::string text;
  };

  /// Appends an entry; `format` and what follows are as for printf. Beyond 10,000 entries the oldest goes.
  __attribute__((format(printf, 4, 5))) static void Trace(int level, const char* module, const char* category,
                                                          const char* format, ...);
  /// Empties the trace and returns what it held, oldest first.
  [[nodiscard]] static std::vector<Entry> TakeEntries();
};

}  // namespace du
