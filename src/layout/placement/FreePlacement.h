#pragma once
// The last resort: puts single labels wherever there is room.

#include "layout/placement/Scene.h"

namespace zrcallouts::placement {

/// Places every item of `spots` that has no place yet at the free position nearest to its anchors: off the model while
/// there is room, over it otherwise; biggest labels first. Of the free positions one is taken that causes no crossing
/// and covers no leader or anchor, or else few. Where nothing is free the item stays without a place.
void PlaceFreely(const Scene& scene, SpotList& spots);

}  // namespace zrcallouts::placement
