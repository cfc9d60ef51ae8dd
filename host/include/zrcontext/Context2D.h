#pragma once

#include <du/Export.h>

namespace zrcontext {

/// Measuring context for labels on a 2D surface, owned by whoever made it with new.
class ZR_HOST_API Context2D {
public:
  Context2D();
  ~Context2D();
  Context2D(const Context2D&) = delete;
  Context2D& operator=(const Context2D&) = delete;

  /// Contexts that exist in the process.
  [[nodiscard]] static int GetLiveCount();
};

}  // namespace zrcontext
