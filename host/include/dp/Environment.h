#pragma once

#include <du/Export.h>

namespace dp {

/// The environment of the process.
class ZR_HOST_API Environment {
public:
  /// True when the variable is set, to whatever value.
  [[nodiscard]] static bool Test(const char* name);
};

}  // namespace dp
