// Simulated annealing (Kirkpatrick, Gelatt, Vecchi: Optimization by simulated annealing, 1983) over exchanges of two
// seats and moves to free seats, with the sum of leader lengths and a fixed price for each crossing as energy. An
// exchange is drawn among seats that are near each other along the frame, since far ones are hardly ever taken. Only
// what the movers cross is counted anew: segments of all leaders stand in one flat list. Random numbers come from a
// generator of its own with a fixed seed, so that equal requests get equal results everywhere. Cost: the number of
// steps times the number of leaders.
#include "layout/placement/LocalSearch.h"

#include <algorithm>
#include <cmath>

#include "layout/placement/Audit.h"

namespace zrcallouts::placement {

namespace {

constexpr std::size_t kNobody = static_cast<std::size_t>(-1);

/// xorshift64* (Marsaglia 2003; Vigna 2016).
class Random {
public:
  std::uint64_t Next() {
    state_ ^= state_ >> 12;
    state_ ^= state_ << 25;
    state_ ^= state_ >> 27;
    return state_ * 0x2545F4914F6CDD1DULL;
  }
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>((Next() >> 32) * bound >> 32); }
  double Unit() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }

private:
  std::uint64_t state_ = 0x9E3779B97F4A7C15ULL;
};

class Annealing {
public:
  Annealing(const Scene& scene, Seating& seating);

  void Run(std::size_t steps);

private:
  struct Segment {
    FixedPoint a, b;
    std::size_t owner;
  };
  struct Place {
    Seat seat;
    std::size_t sitter;  ///< Index into seating_.items or kNobody.
  };

  [[nodiscard]] const Item& ItemOf(std::size_t k) const { return scene_.items[seating_.items[k]]; }
  void Settle(std::size_t k, std::size_t place);
  [[nodiscard]] int Crossings(std::size_t k, const LabelSpot& spot, std::size_t skipped) const;
  [[nodiscard]] double Energy(std::size_t k, const LabelSpot& spot, std::size_t skipped) const;
  void TryExchange(std::size_t from, std::size_t to);
  void Remember();

  const Scene& scene_;
  Seating& seating_;
  Random random_;
  std::vector<Place> places_;         ///< In order round the frame.
  std::vector<std::size_t> placeOf_;  ///< Of each sitter.
  SpotList spots_;
  std::vector<std::vector<Segment>> segments_;
  double temperature_ = 0, energy_ = 0, bestEnergy_ = 0;
  std::vector<std::size_t> bestPlaceOf_;
};

constexpr double kCrossingCost = 400.0 * kUnitsPerPixel;

/// Position round the frame: sides one after the other, clockwise.
std::pair<int, Coord> Around(const Seat& seat) {
  const FixedPoint port = seat.spot.port;
  switch (kSides[seat.side]) {
    case Side::Top:
      return {0, port.x};
    case Side::Right:
      return {1, port.y};
    case Side::Bottom:
      return {2, -port.x};
    case Side::Left:
      return {3, -port.y};
  }
  return {};
}

Annealing::Annealing(const Scene& scene, Seating& seating) : scene_(scene), seating_(seating) {
  for (std::size_t k = 0; k < seating.seats.size(); ++k) places_.push_back({seating.seats[k], k});
  for (const Seat& seat : seating.free) places_.push_back({seat, kNobody});
  std::sort(places_.begin(), places_.end(),
            [](const Place& a, const Place& b) { return Around(a.seat) < Around(b.seat); });
  placeOf_.resize(seating.seats.size());
  spots_.resize(seating.seats.size());
  segments_.resize(seating.seats.size());
  for (std::size_t place = 0; place < places_.size(); ++place)
    if (places_[place].sitter != kNobody) Settle(places_[place].sitter, place);
  double crossings = 0, length = 0;
  for (std::size_t k = 0; k < spots_.size(); ++k) {
    crossings += Crossings(k, spots_[k], kNobody);
    length += LeaderLength(ItemOf(k), spots_[k]);
  }
  energy_ = crossings / 2 * kCrossingCost + length;
  Remember();
}

void Annealing::Settle(std::size_t k, std::size_t place) {
  places_[place].sitter = k;
  placeOf_[k] = place;
  spots_[k] = SpotOn(ItemOf(k), places_[place].seat, seating_.frame);
  segments_[k].clear();
  ForEachSegment(ItemOf(k), spots_[k], [&](FixedPoint a, FixedPoint b) { segments_[k].push_back({a, b, k}); });
}

int Annealing::Crossings(std::size_t k, const LabelSpot& spot, std::size_t skipped) const {
  int count = 0;
  for (std::size_t other = 0; other < segments_.size(); ++other) {
    if (other == k || other == skipped) continue;
    bool meet = false;
    ForEachSegment(ItemOf(k), spot, [&](FixedPoint a, FixedPoint b) {
      for (const Segment& s : segments_[other]) meet = meet || LeaderSegmentsMeet(a, b, s.a, s.b);
    });
    count += meet;
  }
  return count;
}

double Annealing::Energy(std::size_t k, const LabelSpot& spot, std::size_t skipped) const {
  return kCrossingCost * Crossings(k, spot, skipped) + LeaderLength(ItemOf(k), spot);
}

void Annealing::TryExchange(std::size_t from, std::size_t to) {
  const std::size_t a = places_[from].sitter, b = places_[to].sitter;
  if (!Fits(ItemOf(a), places_[to].seat)) return;
  const LabelSpot newA = SpotOn(ItemOf(a), places_[to].seat, seating_.frame);
  double change = Energy(a, newA, b) - Energy(a, spots_[a], b);
  if (b != kNobody) {
    if (!Fits(ItemOf(b), places_[from].seat)) return;
    const LabelSpot newB = SpotOn(ItemOf(b), places_[from].seat, seating_.frame);
    change += Energy(b, newB, a) - Energy(b, spots_[b], a);
    change += kCrossingCost *
              (LeadersMeet(ItemOf(a), newA, ItemOf(b), newB) - LeadersMeet(ItemOf(a), spots_[a], ItemOf(b), spots_[b]));
  }
  if (change > 0 && random_.Unit() >= std::exp(-change / temperature_)) return;
  places_[from].sitter = kNobody;
  Settle(a, to);
  if (b != kNobody) Settle(b, from);
  energy_ += change;
  if (energy_ < bestEnergy_ - 1e-3) Remember();
}

void Annealing::Remember() {
  bestEnergy_ = energy_;
  bestPlaceOf_ = placeOf_;
}

void Annealing::Run(std::size_t steps) {
  const double hot = kCrossingCost * atof(getenv("HOT") ? getenv("HOT") : "0.5"), cold = kCrossingCost * 0.01;
  const std::size_t reach = std::min<std::size_t>(places_.size() / 2, 24);
  for (std::size_t step = 0; step < steps; ++step) {
    const double progress = static_cast<double>(step) / static_cast<double>(steps);
    temperature_ = hot * std::pow(cold / hot, progress);
    const std::size_t from = placeOf_[random_.Below(placeOf_.size())];
    const std::size_t distance = 1 + random_.Below(reach);
    const std::size_t to = (from + (random_.Below(2) == 0 ? distance : places_.size() - distance)) % places_.size();
    TryExchange(from, to);
  }
  std::vector<bool> taken(places_.size(), false);
  for (std::size_t k = 0; k < bestPlaceOf_.size(); ++k) {
    seating_.seats[k] = places_[bestPlaceOf_[k]].seat;
    taken[bestPlaceOf_[k]] = true;
  }
  seating_.free.clear();
  for (std::size_t place = 0; place < places_.size(); ++place)
    if (!taken[place]) seating_.free.push_back(places_[place].seat);
}

}  // namespace

void ReduceCrossings(const Scene& scene, Seating& seating, std::size_t budget) {
  if (seating.seats.size() + seating.free.size() < 2) return;
  Annealing(scene, seating).Run(budget);
}

SpotList SpotsOf(const Scene& scene, const Seating& seating) {
  SpotList spots(scene.items.size());
  for (std::size_t k = 0; k < seating.items.size(); ++k)
    if (seating.seats[k].spot.placed)
      spots[seating.items[k]] = SpotOn(scene.items[seating.items[k]], seating.seats[k], seating.frame);
  return spots;
}

}  // namespace zrcallouts::placement
