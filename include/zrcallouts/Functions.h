#pragma once
// The component's free functions.

#include <du/SmartPtr.h>

#include "zrcallouts/Export.h"

namespace zrk {
class ShapeScene;
}

namespace zrcallouts {

class Callouts;

/// The engine that the host's engine manager holds for `scene`; empty when it holds none. [any-thread]
[[nodiscard]] ZR_CALLOUTS_API du::SmartPtr<Callouts> GetCalloutsEngineForScene(
    const du::SmartPtr<zrk::ShapeScene>& scene);

}  // namespace zrcallouts
