#pragma once
// A picture of the model without callouts: what the callouts are arranged round.

#include <vector>

#include "commands/OccurrenceTree.h"
#include "visibility/IdBuffer.h"
#include "visibility/View.h"
#include "visibility/VisibilityScene.h"
#include "visibility/VisibleRegions.h"

namespace zrfigure {

/// One view of the model on a page, with what is seen in it.
struct Picture {
  View view;
  Box2 room;  ///< What of the page it may use, labels included.
  IdBuffer ids;
  std::vector<VisibleRegion> regions;
  Box2 modelBox;  ///< Of the model on the page.
};

/// Renders the model's leaves.
[[nodiscard]] Picture TakePicture(const OccurrenceTree& tree, const VisibilityScene& scene, const View& view,
                                  const Box2& room);

}  // namespace zrfigure
