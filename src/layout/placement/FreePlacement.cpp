// Candidate positions lie on a raster over the page whose pitch grows with the page, so that the number of tests is
// bounded. A candidate is free when it overlaps no placed label and no obstacle, which a grid index answers; of the
// free ones the label takes the one with the shortest leaders, at first outside the model's clearance, then anywhere.
#include "layout/placement/FreePlacement.h"

#include <algorithm>
#include <limits>

#include "layout/placement/GridIndex.h"

namespace zrcallouts::placement {

namespace {

class FreeSpace {
public:
  FreeSpace(const Scene& scene, const SpotList& spots)
      : scene_(scene), index_(scene.page, spots.size() + scene.obstacles.size()) {
    for (const FixedBox& obstacle : scene.obstacles) Add(obstacle);
    for (const LabelSpot& spot : spots)
      if (spot.placed) Add(spot.box);
  }

  void Add(const FixedBox& box) {
    index_.InsertBox(static_cast<std::uint32_t>(boxes_.size()), box);
    boxes_.push_back(box);
  }

  [[nodiscard]] bool Find(const Item& item, bool offModel, LabelSpot& found) const;

private:
  [[nodiscard]] bool IsFree(const FixedBox& box) const {
    near_.clear();
    index_.StartQuery();
    index_.CollectNearBox(box, near_);
    return std::none_of(near_.begin(), near_.end(), [&](std::uint32_t i) { return BoxesOverlap(boxes_[i], box); });
  }

  const Scene& scene_;
  GridIndex index_;
  std::vector<FixedBox> boxes_;
  mutable std::vector<std::uint32_t> near_;
};

bool FreeSpace::Find(const Item& item, bool offModel, LabelSpot& found) const {
  constexpr Coord kStepsAcross = 160;
  const FixedBox& page = scene_.page;
  const FixedBox keepOff = scene_.model.Grown(scene_.clearance);
  const Coord stepX = std::max<Coord>(1, (page.Width() - item.width) / kStepsAcross);
  const Coord stepY = std::max<Coord>(1, (page.Height() - item.height) / kStepsAcross);
  double best = std::numeric_limits<double>::max();
  for (Coord y = page.top; y + item.height <= page.bottom; y += stepY) {
    for (Coord x = page.left; x + item.width <= page.right; x += stepX) {
      const FixedBox box{x, y, x + item.width, y + item.height};
      if (offModel && BoxesOverlap(box, keepOff)) continue;
      const FixedPoint attach = NearestInBox(item.focus, box);
      const double length = Distance(item.focus, attach);
      if (length >= best || !IsFree(box)) continue;
      best = length;
      found = {true, box, attach, attach};
    }
  }
  return best < std::numeric_limits<double>::max();
}

}  // namespace

void PlaceFreely(const Scene& scene, SpotList& spots) {
  std::vector<std::size_t> waiting;
  for (std::size_t i = 0; i < spots.size(); ++i)
    if (!spots[i].placed) waiting.push_back(i);
  std::stable_sort(waiting.begin(), waiting.end(), [&](std::size_t a, std::size_t b) {
    return scene.items[a].width * scene.items[a].height > scene.items[b].width * scene.items[b].height;
  });
  FreeSpace space(scene, spots);
  for (const std::size_t i : waiting) {
    LabelSpot& spot = spots[i];
    if (space.Find(scene.items[i], true, spot) || space.Find(scene.items[i], false, spot)) space.Add(spot.box);
  }
}

}  // namespace zrcallouts::placement
