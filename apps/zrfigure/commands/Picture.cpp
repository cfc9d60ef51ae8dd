#include "commands/Picture.h"

#include <utility>

namespace zrfigure {

Picture TakePicture(const OccurrenceTree& tree, const VisibilityScene& scene, const View& view, const Box2& room) {
  IdBuffer ids = RenderIdBuffer(scene, view);
  std::vector<VisibleRegion> regions = FindVisibleRegions(ids, view);
  return {view, room, std::move(ids), std::move(regions), ProjectedBox(tree.GetModel(), tree.Leaves(), view)};
}

}  // namespace zrfigure
