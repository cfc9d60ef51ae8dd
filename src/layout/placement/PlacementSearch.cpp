#include "layout/placement/PlacementSearch.h"

#include <algorithm>

#include "layout/placement/FreePlacement.h"
#include "layout/placement/NearMisses.h"
#include "layout/placement/SideSweeps.h"
#include "layout/placement/SlotMatching.h"

namespace zrcallouts::placement {

PlacementSearch::PlacementSearch(const Scene& scene) : scene_(scene) {
  for (const Item& item : scene.items) {
    withoutAnchors_ += item.anchors.empty();
    severalLeaders_ |= item.anchors.size() > 1;
  }
  constexpr int kWork = 120000, kLeastSweeps = 2;
  sweepsLeft_ = std::max(kLeastSweeps, kWork / static_cast<int>(scene.items.size() + 1));
}

SpotList PlacementSearch::Run() {
  const std::size_t count = scene_.items.size();
  if (count == static_cast<std::size_t>(withoutAnchors_)) {
    SpotList spots(count);
    PlaceFreely(scene_, spots);
    return spots;
  }
  if (IsNearUniform()) MatchOutside();
  if (!AllSeated()) SweepOutside();
  if (!AllSeated()) MatchInside();
  PlaceFreely(scene_, best_);
  bestTally_ = Audit(scene_, best_);
  if (bestTally_.labelsOverModel > 0) MoveTroublemakers();
  ShiftNearMisses(scene_, best_);
  return best_;
}

/// Over the model's margin nothing keeps leaders apart for sure: what is in the way of others gets a place of its own.
void PlacementSearch::MoveTroublemakers() {
  constexpr int kRounds = 4;
  for (int round = 0; round < kRounds; ++round) {
    SpotList spots = best_;
    for (const std::size_t i : Troublemakers(scene_, spots)) spots[i].placed = false;
    PlaceFreely(scene_, spots);
    if (!Consider(std::move(spots))) return;
  }
}

bool PlacementSearch::IsNearUniform() const {
  constexpr double kMostToMean = 1.5;
  double width = 0, height = 0, mostWidth = 0, mostHeight = 0, count = 0;
  for (const Item& item : scene_.items) {
    if (item.anchors.empty()) continue;
    width += static_cast<double>(item.width);
    height += static_cast<double>(item.height);
    mostWidth = std::max(mostWidth, static_cast<double>(item.width));
    mostHeight = std::max(mostHeight, static_cast<double>(item.height));
    ++count;
  }
  return mostWidth * count <= kMostToMean * width && mostHeight * count <= kMostToMean * height;
}

RingPlan PlacementSearch::PlanAround(const FixedBox& frame, int rows, int columns, Coord gap) const {
  return {frame, {rows, columns, rows, columns}, gap, gap / 2};
}

bool PlacementSearch::Consider(SpotList spots) {
  const Tally tally = Audit(scene_, spots);
  if (!best_.empty() && !tally.IsBetterThan(bestTally_)) return false;
  best_ = std::move(spots);
  bestTally_ = tally;
  return true;
}

/// Tries more and more rings until more of them help no longer. Large scenes get one try, with slots to spare.
bool PlacementSearch::MatchRings(const FixedBox& frame, int firstRings, Coord gap) {
  constexpr std::size_t kLarge = 300;
  const std::size_t count = scene_.items.size() - static_cast<std::size_t>(withoutAnchors_);
  bool found = false;
  RingPlan bestPlan;
  for (int rings = firstRings; rings <= scene_.maxRings; ++rings) {
    const RingPlan plan = PlanAround(frame, rings, rings, gap);
    std::vector<Seat> slots = MakeSlots(scene_, plan);
    const bool last = rings == scene_.maxRings;
    if (slots.size() < count || (count > kLarge && !last && slots.size() < count + count / 5)) continue;
    found = true;
    if (!Consider(MatchToSlots(scene_, plan, std::move(slots)))) break;
    bestPlan = plan;
    if (count > kLarge) break;
  }
  if (found && severalLeaders_ && bestTally_.crossings > 0)
    Consider(MatchAndUntangle(scene_, bestPlan, MakeSlots(scene_, bestPlan)));
  return found;
}

void PlacementSearch::MatchOutside() {
  const FixedBox frame = scene_.model.Grown(scene_.clearance);
  for (const Coord gap : {scene_.gap, scene_.gap * 2 / 3, scene_.gap / 3})
    if (MatchRings(frame, 1, gap)) return;
}

/// The largest frame round the model that leaves room for the rings on the page.
FixedBox PlacementSearch::FrameInsidePage(int rings, Coord gap) const {
  Coord width = 0, height = 0;
  for (const Item& item : scene_.items) {
    if (item.anchors.empty()) continue;
    width = std::max(width, item.width);
    height = std::max(height, item.height);
  }
  const FixedBox frame = scene_.model.Grown(scene_.clearance);
  const Coord columns = rings * (width + gap), rows = rings * (height + gap);
  return {std::max(frame.left, scene_.page.left + columns), std::max(frame.top, scene_.page.top + rows),
          std::min(frame.right, scene_.page.right - columns), std::min(frame.bottom, scene_.page.bottom - rows)};
}

/// The page has no room round the model: labels stand over the model's margin.
void PlacementSearch::MatchInside() {
  for (int rings = 1; rings <= scene_.maxRings; ++rings) {
    const FixedBox frame = FrameInsidePage(rings, scene_.gap);
    if (frame.left >= frame.right || frame.top >= frame.bottom) return;
    const RingPlan plan = PlanAround(frame, rings, rings, scene_.gap);
    std::vector<Seat> slots = MakeSlots(scene_, plan);
    if (slots.size() + static_cast<std::size_t>(withoutAnchors_) < scene_.items.size()) continue;
    Consider(MatchToSlots(scene_, plan, std::move(slots)));
    return;
  }
}

void PlacementSearch::SweepOutside() {
  const FixedBox frame = scene_.model.Grown(scene_.clearance);
  for (const Coord gap : {scene_.gap, scene_.gap / 2}) {
    for (const Coord growth : {Coord{0}, scene_.clearance, scene_.clearance * 2, scene_.clearance * 3}) {
      SweepRings(frame.Grown(growth), gap);
      if (AllSeated() || sweepsLeft_ <= 0) return;
    }
  }
}

/// Tries more and more rings until more of them help no longer; while labels are without a place it tries once more.
void PlacementSearch::SweepRings(const FixedBox& frame, Coord gap) {
  RingPlan bestPlan;
  double bestStacking = 0;
  for (int rings = 1, idle = 0; rings <= scene_.maxRings && idle < (AllSeated() ? 1 : 2); ++rings) {
    bool better = false;
    for (const int columns : {1, 2, 3}) {
      if (columns > rings) continue;
      for (const double stacking : {1.0, 1.2}) {
        if (--sweepsLeft_ < 0) return;
        const RingPlan plan = PlanAround(frame, rings, columns, gap);
        if (!Consider(SweepSides(scene_, plan, stacking))) continue;
        better = true;
        bestPlan = plan;
        bestStacking = stacking;
      }
    }
    idle = better || rings == 1 ? 0 : idle + 1;
  }
  if (bestStacking > 0 && AllSeated() && severalLeaders_ && bestTally_.crossings > 0)
    Consider(SweepAndUntangle(scene_, bestPlan, bestStacking));
}

}  // namespace zrcallouts::placement
