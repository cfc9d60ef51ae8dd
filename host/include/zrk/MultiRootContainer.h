#pragma once

#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// The world's container of open documents; applications derive theirs from it.
class ZR_HOST_API MultiRootContainer : public Object {
public:
  MultiRootContainer();
  ~MultiRootContainer() override;
};

}  // namespace zrk
