#pragma once

namespace zrk::illustration {

/// How a view shows its page.
struct PageSizeSettings {
  bool pageShown = false;
};

}  // namespace zrk::illustration
