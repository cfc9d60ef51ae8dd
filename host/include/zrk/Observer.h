#pragma once

#include <dom/ManagedObject.h>
#include <du/Export.h>

namespace zrk {

/// Base of all observers. Notifications arrive on the thread that makes the change, after it, with no host lock held.
class ZR_HOST_API Observer : public dom::ManagedObject {
public:
  ~Observer() override;
};

}  // namespace zrk
