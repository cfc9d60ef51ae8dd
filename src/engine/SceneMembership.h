#pragma once

#include <du/SmartPtr.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/Callouts.h>

namespace zrcallouts {

/// Whether what is in `scene` is none of the engine's business, because the engine is bound to another scene: the same
/// ids stand for other parts there.
[[nodiscard]] inline bool IsElsewhere(const zrk::illustration::Callouts& engine,
                                      const du::SmartPtr<zrk::Scene>& scene) {
  const auto own = engine.GetScene();
  return scene && own && scene.Get() != own.Get();
}

}  // namespace zrcallouts
