#pragma once
// Groups parts by the manufacturing operation that uses them.

#include <du/SmartPtr.h>
#include <du/Symbol.h>

namespace zrk::illustration {
class SbomInstance;
}

namespace zrcallouts {

/// The key of the manufacturing operation that `instance` belongs to; empty when it belongs to none, or when the
/// environment variable FOLIANT_DISABLE_MPM_CALLOUT_GROUPING is set. The variable is read once a process. [any-thread]
[[nodiscard]] du::Symbol ProcessPlanKeyOf(const du::SmartPtr<zrk::illustration::SbomInstance>& instance);

}  // namespace zrcallouts
