// Candidate positions lie on a raster over the page that gets coarser with the number of labels, so that the number of
// tests is bounded. They are tried in the order of their distance, and grid indexes answer what stands near: a position
// must be free of labels and obstacles; of the nearest free ones the first without conflicts is taken, else the one
// with fewest. Each label has its share of a fixed number of tests between leaders, so that a page without room for all
// costs no more than one with room; the tests are counted, not timed, which keeps the result the same on every machine.
#include "layout/placement/FreePlacement.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "layout/placement/Audit.h"
#include "layout/placement/GridIndex.h"

namespace zrcallouts::placement {

namespace {

/// Where leaders end. A label that covers all that it points at gets leaders that nobody sees.
FixedPoint AttachPoint(const Item& item, const FixedBox& box) {
  const bool coversAll = std::all_of(item.anchors.begin(), item.anchors.end(),
                                     [&](FixedPoint anchor) { return NearestInBox(anchor, box) == anchor; });
  return coversAll ? NearestInBox(item.focus, box) : NearestOnBorder(item.focus, box);
}

class FreeSpace {
public:
  FreeSpace(const Scene& scene, SpotList& spots, std::size_t waiting);

  /// Puts item i where it fits best; false where nothing is free.
  bool Place(std::size_t i, bool offModel);

private:
  struct Candidate {
    double distance;
    FixedBox box;
  };

  void AddLabel(std::size_t i);
  [[nodiscard]] std::vector<Candidate> Candidates(const Item& item, bool offModel) const;
  [[nodiscard]] bool IsFree(const FixedBox& box) const;
  [[nodiscard]] int Conflicts(std::size_t i, const LabelSpot& spot, int enough) const;

  const Scene& scene_;
  SpotList& spots_;
  GridIndex obstacles_, labels_, leaders_, anchors_;
  Coord stepsAcross_ = 0;
  std::size_t mostFree_ = 0;   ///< Free positions to look at for one label.
  std::size_t mostTests_ = 0;  ///< Tests between two leader pieces to spend on one label.
  mutable std::size_t tests_ = 0;
  mutable std::vector<std::uint32_t> near_;
};

FreeSpace::FreeSpace(const Scene& scene, SpotList& spots, std::size_t waiting)
    : scene_(scene),
      spots_(spots),
      obstacles_(scene.page, scene.obstacles.size()),
      labels_(scene.page, spots.size()),
      leaders_(scene.page, spots.size()),
      anchors_(scene.page, spots.size()) {
  constexpr std::size_t kLeaderTests = 40000000;
  constexpr double kTests = 4.0e5, kFinest = 128, kCoarsest = 12;
  stepsAcross_ = static_cast<Coord>(
      std::clamp(std::sqrt(kTests / static_cast<double>(std::max<std::size_t>(1, waiting))), kCoarsest, kFinest));
  mostFree_ = std::max<std::size_t>(200, 60000 / std::max<std::size_t>(1, waiting));
  mostTests_ = kLeaderTests / std::max<std::size_t>(1, waiting);
  for (std::uint32_t k = 0; k < scene.obstacles.size(); ++k) obstacles_.InsertBox(k, scene.obstacles[k]);
  for (std::uint32_t i = 0; i < spots.size(); ++i) {
    for (const FixedPoint anchor : scene.items[i].anchors) anchors_.InsertSegment(i, anchor, anchor);
    if (spots[i].placed) AddLabel(i);
  }
}

void FreeSpace::AddLabel(std::size_t i) {
  const auto id = static_cast<std::uint32_t>(i);
  labels_.InsertBox(id, spots_[i].box);
  ForEachSegment(scene_.items[i], spots_[i], [&](FixedPoint a, FixedPoint b) { leaders_.InsertSegment(id, a, b); });
}

bool FreeSpace::IsFree(const FixedBox& box) const {
  const auto nearBox = [&](const GridIndex& index) -> const std::vector<std::uint32_t>& {
    near_.clear();
    index.StartQuery();
    index.CollectNearBox(box, near_);
    return near_;
  };
  for (const std::uint32_t j : nearBox(labels_))
    if (BoxesOverlap(spots_[j].box, box)) return false;
  for (const std::uint32_t k : nearBox(obstacles_))
    if (BoxesOverlap(scene_.obstacles[k], box)) return false;
  return true;
}

/// Leaders and labels that the item would get in the way of on this spot, and foreign anchors that it would cover;
/// counted up to `enough`.
int FreeSpace::Conflicts(std::size_t i, const LabelSpot& spot, int enough) const {
  const Item& item = scene_.items[i];
  int count = 0;
  const auto nearLeaders = [&](const GridIndex& index) -> const std::vector<std::uint32_t>& {
    near_.clear();
    index.StartQuery();
    ForEachSegment(item, spot, [&](FixedPoint a, FixedPoint b) { index.CollectNearSegment(a, b, near_); });
    return near_;
  };
  const auto nearBox = [&](const GridIndex& index) -> const std::vector<std::uint32_t>& {
    near_.clear();
    index.StartQuery();
    index.CollectNearBox(spot.box, near_);
    return near_;
  };
  const auto addAll = [&](const std::vector<std::uint32_t>& others, const auto& conflictsWith) {
    for (auto other = others.begin(); other != others.end() && count < enough; ++other)
      count += static_cast<int>(conflictsWith(*other));
  };
  addAll(nearLeaders(leaders_), [&](std::uint32_t j) {
    tests_ += item.anchors.size() * scene_.items[j].anchors.size();
    return LeadersMeet(item, spot, scene_.items[j], spots_[j]);
  });
  addAll(nearLeaders(labels_), [&](std::uint32_t j) { return LeaderEntersBox(item, spot, spots_[j].box); });
  addAll(nearLeaders(obstacles_), [&](std::uint32_t k) { return LeaderEntersBox(item, spot, scene_.obstacles[k]); });
  addAll(nearBox(leaders_), [&](std::uint32_t j) { return LeaderEntersBox(scene_.items[j], spots_[j], spot.box); });
  addAll(nearBox(anchors_), [&](std::uint32_t j) {
    const auto& anchors = scene_.items[j].anchors;
    return j == i ? 0 : std::count_if(anchors.begin(), anchors.end(), [&](FixedPoint anchor) {
      return NearestInBox(anchor, spot.box) == anchor;
    });
  });
  return count;
}

std::vector<FreeSpace::Candidate> FreeSpace::Candidates(const Item& item, bool offModel) const {
  const FixedBox& page = scene_.page;
  const FixedBox keepOff = offModel ? scene_.model.Grown(scene_.clearance) : FixedBox{};
  const Coord stepX = std::max<Coord>(1, (page.Width() - item.width) / stepsAcross_);
  const Coord stepY = std::max<Coord>(1, (page.Height() - item.height) / stepsAcross_);
  std::vector<Candidate> candidates;
  for (Coord y = page.top; y + item.height <= page.bottom; y += stepY) {
    for (Coord x = page.left; x + item.width <= page.right; x += stepX) {
      const FixedBox box{x, y, x + item.width, y + item.height};
      if (!BoxesOverlap(box, keepOff)) candidates.push_back({Distance(item.focus, NearestInBox(item.focus, box)), box});
    }
  }
  std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
    return std::tie(a.distance, a.box) < std::tie(b.distance, b.box);
  });
  return candidates;
}

bool FreeSpace::Place(std::size_t i, bool offModel) {
  const Item& item = scene_.items[i];
  int fewest = std::numeric_limits<int>::max();
  std::size_t tried = 0;
  tests_ = 0;
  LabelSpot best;
  for (const Candidate& candidate : Candidates(item, offModel)) {
    if (!IsFree(candidate.box)) continue;
    if (++tried > mostFree_ || (best.placed && tests_ > mostTests_)) break;
    const FixedPoint attach = AttachPoint(item, candidate.box);
    const LabelSpot spot{true, candidate.box, attach, attach};
    const int conflicts = Conflicts(i, spot, fewest);
    if (conflicts >= fewest) continue;
    fewest = conflicts;
    best = spot;
    if (conflicts == 0) break;
  }
  if (!best.placed) return false;
  spots_[i] = best;
  AddLabel(i);
  return true;
}

}  // namespace

void PlaceFreely(const Scene& scene, SpotList& spots) {
  std::vector<std::size_t> waiting;
  for (std::size_t i = 0; i < spots.size(); ++i)
    if (!spots[i].placed) waiting.push_back(i);
  if (waiting.empty()) return;
  std::stable_sort(waiting.begin(), waiting.end(), [&](std::size_t a, std::size_t b) {
    return scene.items[a].width * scene.items[a].height > scene.items[b].width * scene.items[b].height;
  });
  FreeSpace space(scene, spots, waiting.size());
  for (const std::size_t i : waiting)
    if (!space.Place(i, true)) space.Place(i, false);
}

}  // namespace zrcallouts::placement
