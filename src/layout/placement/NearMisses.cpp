// With ports given, leaders that do not cross are nearly unique: exchanging labels clears hardly any near miss. What is
// free is how a leader gets to its label: where on the label's edge it ends, and how early in the empty strip round the
// model it bends. A few such ways are tried for each leader with a near miss; grid indexes answer what would be in
// their way. Cost: some microseconds a way.
#include "layout/placement/NearMisses.h"

#include <algorithm>
#include <cmath>

#include "layout/placement/Audit.h"

namespace zrcallouts::placement {

namespace {

constexpr Coord kTooNear = 2 * kUnitsPerPixel;

bool IsTooNear(FixedPoint a, FixedPoint b, FixedPoint anchor) {
  const double dx = static_cast<double>(b.x - a.x), dy = static_cast<double>(b.y - a.y);
  const double px = static_cast<double>(anchor.x - a.x), py = static_cast<double>(anchor.y - a.y);
  const double along = std::clamp((px * dx + py * dy) / std::max(1.0, dx * dx + dy * dy), 0.0, 1.0);
  const double offX = along * dx - px, offY = along * dy - py;
  return offX * offX + offY * offY < static_cast<double>(kTooNear * kTooNear);
}

/// All leaders and labels, to ask what is in the way of a changed leader.
class Leaders {
public:
  Leaders(const Scene& scene, SpotList& spots)
      : scene_(scene), spots_(spots), leaders_(scene.page, spots.size()), labels_(scene.page, spots.size()) {
    for (std::uint32_t i = 0; i < spots.size(); ++i) {
      if (!spots[i].placed) continue;
      labels_.InsertBox(i, spots[i].box);
      ForEachSegment(scene.items[i], spots[i], [&](FixedPoint a, FixedPoint b) { leaders_.InsertSegment(i, a, b); });
    }
  }

  [[nodiscard]] int Conflicts(std::size_t i, const LabelSpot& spot) const;
  void Put(std::uint32_t i, const LabelSpot& spot);

private:
  const Scene& scene_;
  SpotList& spots_;
  GridIndex leaders_, labels_;
};

int Leaders::Conflicts(std::size_t i, const LabelSpot& spot) const {
  const Item& item = scene_.items[i];
  int count = 0;
  std::vector<std::uint32_t> near;
  const auto collect = [&](const GridIndex& index) {
    near.clear();
    index.StartQuery();
    ForEachSegment(item, spot, [&](FixedPoint a, FixedPoint b) { index.CollectNearSegment(a, b, near); });
  };
  collect(leaders_);
  for (const std::uint32_t j : near) count += j != i && LeadersMeet(item, spot, scene_.items[j], spots_[j]);
  collect(labels_);
  for (const std::uint32_t j : near) count += j != i && LeaderEntersBox(item, spot, spots_[j].box);
  for (const FixedBox& obstacle : scene_.obstacles) count += LeaderEntersBox(item, spot, obstacle);
  return count;
}

void Leaders::Put(std::uint32_t i, const LabelSpot& spot) {
  ForEachSegment(scene_.items[i], spots_[i], [&](FixedPoint a, FixedPoint b) { leaders_.RemoveSegment(i, a, b); });
  spots_[i] = spot;
  ForEachSegment(scene_.items[i], spots_[i], [&](FixedPoint a, FixedPoint b) { leaders_.InsertSegment(i, a, b); });
}

/// Other points for the leader to end on the same edge, the nearest to its middle first.
std::vector<LabelSpot> OtherEnds(const LabelSpot& spot) {
  const bool rowEdge = spot.attach.y == spot.box.top || spot.attach.y == spot.box.bottom;
  const Coord low = rowEdge ? spot.box.left : spot.box.top, high = rowEdge ? spot.box.right : spot.box.bottom;
  std::vector<LabelSpot> spots;
  for (const Coord eighth : {4, 3, 5, 2, 6}) {
    LabelSpot next = spot;
    (rowEdge ? next.attach.x : next.attach.y) = low + (high - low) * eighth / 8;
    next.port = next.attach;
    spots.push_back(next);
  }
  return spots;
}

/// Bends nearer to the model, the latest first. The piece behind the bend gets longer in its own direction.
std::vector<LabelSpot> OtherBends(const LabelSpot& spot, Coord clearance) {
  constexpr Coord kSteps = 8;
  const Coord alongX = (spot.port.x > spot.attach.x) - (spot.port.x < spot.attach.x);
  const Coord alongY = (spot.port.y > spot.attach.y) - (spot.port.y < spot.attach.y);
  std::vector<LabelSpot> spots;
  for (Coord step = 1; step <= kSteps; ++step) {
    LabelSpot next = spot;
    next.port.x += alongX * clearance * step / kSteps;
    next.port.y += alongY * clearance * step / kSteps;
    spots.push_back(next);
  }
  return spots;
}

}  // namespace

NearMissIndex::NearMissIndex(const Scene& scene) : scene_(scene), anchors_(scene.page, 4 * scene.items.size()) {
  for (std::uint32_t i = 0; i < scene.items.size(); ++i)
    for (const FixedPoint anchor : scene.items[i].anchors)
      anchors_.InsertBox(i, FixedBox{anchor.x, anchor.y, anchor.x, anchor.y}.Grown(kTooNear));
}

int NearMissIndex::Count(std::size_t i, const LabelSpot& spot) const {
  const Item& item = scene_.items[i];
  int count = 0;
  ForEachSegment(item, spot, [&](FixedPoint a, FixedPoint b) {
    near_.clear();
    anchors_.StartQuery();
    anchors_.CollectNearSegment(a, b, near_);
    for (const std::uint32_t j : near_)
      for (const FixedPoint anchor : scene_.items[j].anchors)
        count += j != i && IsTooNear(a, b, anchor) &&
                 std::find(item.anchors.begin(), item.anchors.end(), anchor) == item.anchors.end();
  });
  return count;
}

void ShiftNearMisses(const Scene& scene, SpotList& spots) {
  const NearMissIndex misses(scene);
  Leaders leaders(scene, spots);
  for (std::uint32_t i = 0; i < spots.size(); ++i) {
    if (!spots[i].placed) continue;
    int fewest = misses.Count(i, spots[i]);
    if (fewest == 0) continue;
    const int conflicts = leaders.Conflicts(i, spots[i]);
    const bool straight = spots[i].port == spots[i].attach;
    for (const LabelSpot& next : straight ? OtherEnds(spots[i]) : OtherBends(spots[i], scene.clearance)) {
      const int count = misses.Count(i, next);
      if (count >= fewest || leaders.Conflicts(i, next) > conflicts) continue;
      leaders.Put(i, next);
      fewest = count;
    }
  }
}

}  // namespace zrcallouts::placement
