#pragma once

#include <zrk/Observer.h>

namespace zrk {

/// Base of everything that observes a structure tree.
class ZR_HOST_API BaseTreeObserver : public Observer {
public:
  ~BaseTreeObserver() override;
};

}  // namespace zrk
