// Simulated annealing (Kirkpatrick, Gelatt, Vecchi: Optimization by simulated annealing, 1983) over exchanges of two
// seats and moves to free seats. The energy is the sum of leader lengths and a price for each pair of labels whose
// leaders cross. Exchanges are drawn among seats near each other round the frame, since far ones are hardly ever taken.
// A trial counts what the movers would cross on their new seats; what they cross now is known. Random numbers come from
// a generator of its own with a fixed seed, so that equal requests get equal results everywhere. Cost: the number of
// trials times the number of leaders.
#include "layout/placement/LocalSearch.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "layout/placement/Audit.h"

namespace zrcallouts::placement {

namespace {

constexpr std::size_t kNobody = static_cast<std::size_t>(-1);

/// xorshift64* (Vigna: An experimental exploration of Marsaglia's xorshift generators, scrambled, 2016).
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

/// A piece of a leader with its bounds, which settle most questions.
struct Piece {
  FixedPoint a, b;
  FixedBox bounds;

  Piece(FixedPoint from, FixedPoint to)
      : a(from), b(to), bounds{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)} {}

  [[nodiscard]] bool Meets(const Piece& other) const {
    return bounds.left <= other.bounds.right && other.bounds.left <= bounds.right &&
           bounds.top <= other.bounds.bottom && other.bounds.top <= bounds.bottom &&
           LeaderSegmentsMeet(a, b, other.a, other.b);
  }
};

using Pieces = std::vector<Piece>;

bool AnyMeet(const Pieces& one, const Pieces& other) {
  for (const Piece& p : one)
    for (const Piece& q : other)
      if (p.Meets(q)) return true;
  return false;
}

/// Position round the frame: sides one after the other, clockwise.
std::pair<std::size_t, Coord> Around(const Seat& seat) {
  const FixedPoint port = seat.spot.port;
  const Coord along = kSides[seat.side] == Side::Top || kSides[seat.side] == Side::Bottom ? port.x : port.y;
  return {seat.side, seat.side < 2 ? along : -along};
}

class Annealing {
public:
  Annealing(const Scene& scene, Seating& seating, double crossingCost);

  void Run(std::size_t steps, double daring);

private:
  struct Place {
    Seat seat;
    std::size_t sitter;  ///< Index into seating_.items or kNobody.
  };
  /// A sitter on a place that it may get.
  struct Trial {
    std::size_t sitter = kNobody, place = 0;
    Pieces pieces;
    double length = 0;
    std::vector<bool> meets;  ///< By sitter.
    int crossings = 0;
  };

  [[nodiscard]] const Item& ItemOf(std::size_t k) const { return scene_.items[seating_.items[k]]; }
  void Prepare(std::size_t sitter, std::size_t place, Trial& trial) const;
  void CountCrossings(Trial& trial, std::size_t skipped) const;
  void TryExchange(std::size_t from, std::size_t to);
  void Leave(std::size_t sitter);
  void Settle(const Trial& trial);
  void Remember();
  void GiveBack();

  const Scene& scene_;
  Seating& seating_;
  const double crossingCost_;
  Random random_;
  std::vector<Place> places_;         ///< In order round the frame.
  std::vector<std::size_t> placeOf_;  ///< By sitter, as all below.
  std::vector<Pieces> pieces_;
  std::vector<double> length_;
  std::vector<int> crossings_;
  Trial first_, second_;
  double temperature_ = 0, energy_ = 0, bestEnergy_ = 0;
  std::vector<std::size_t> bestPlaceOf_;
};

Annealing::Annealing(const Scene& scene, Seating& seating, double crossingCost)
    : scene_(scene), seating_(seating), crossingCost_(crossingCost) {
  const std::size_t count = seating.seats.size();
  for (std::size_t k = 0; k < count; ++k) places_.push_back({seating.seats[k], k});
  for (const Seat& seat : seating.free) places_.push_back({seat, kNobody});
  std::sort(places_.begin(), places_.end(), [](const Place& a, const Place& b) {
    return std::make_tuple(Around(a.seat), a.sitter) < std::make_tuple(Around(b.seat), b.sitter);
  });
  placeOf_.resize(count);
  pieces_.resize(count);
  length_.resize(count);
  crossings_.resize(count);
  for (std::size_t place = 0; place < places_.size(); ++place) {
    if (places_[place].sitter == kNobody) continue;
    Prepare(places_[place].sitter, place, first_);
    CountCrossings(first_, kNobody);
    energy_ += first_.length + crossingCost_ * first_.crossings;
    Settle(first_);
  }
  Remember();
}

void Annealing::Prepare(std::size_t sitter, std::size_t place, Trial& trial) const {
  trial.sitter = sitter;
  trial.place = place;
  trial.pieces.clear();
  const LabelSpot spot = SpotOn(ItemOf(sitter), places_[place].seat, seating_.frame);
  trial.length = LeaderLength(ItemOf(sitter), spot);
  ForEachSegment(ItemOf(sitter), spot, [&](FixedPoint a, FixedPoint b) { trial.pieces.emplace_back(a, b); });
}

/// Whom the trial would cross, apart from itself and `skipped`.
void Annealing::CountCrossings(Trial& trial, std::size_t skipped) const {
  trial.meets.assign(pieces_.size(), false);
  trial.crossings = 0;
  for (std::size_t other = 0; other < pieces_.size(); ++other) {
    if (other == trial.sitter || other == skipped || !AnyMeet(trial.pieces, pieces_[other])) continue;
    trial.meets[other] = true;
    ++trial.crossings;
  }
}

void Annealing::Leave(std::size_t sitter) {
  for (std::size_t other = 0; other < pieces_.size(); ++other)
    if (other != sitter && crossings_[other] > 0 && AnyMeet(pieces_[sitter], pieces_[other])) --crossings_[other];
  pieces_[sitter].clear();
}

void Annealing::Settle(const Trial& trial) {
  places_[trial.place].sitter = trial.sitter;
  placeOf_[trial.sitter] = trial.place;
  pieces_[trial.sitter] = trial.pieces;
  length_[trial.sitter] = trial.length;
  crossings_[trial.sitter] = trial.crossings;
  for (std::size_t other = 0; other < pieces_.size(); ++other) crossings_[other] += trial.meets[other];
}

void Annealing::TryExchange(std::size_t from, std::size_t to) {
  const std::size_t a = places_[from].sitter, b = places_[to].sitter;
  if (!Fits(ItemOf(a), places_[to].seat) || (b != kNobody && !Fits(ItemOf(b), places_[from].seat))) return;
  Prepare(a, to, first_);
  CountCrossings(first_, b);
  double change = first_.length - length_[a] + crossingCost_ * (first_.crossings - crossings_[a]);
  if (b != kNobody) {
    Prepare(b, from, second_);
    CountCrossings(second_, a);
    change += second_.length - length_[b] + crossingCost_ * (second_.crossings - crossings_[b]);
    // What the two cross of each other counts once, before and after.
    change += crossingCost_ * (AnyMeet(first_.pieces, second_.pieces) + AnyMeet(pieces_[a], pieces_[b]));
  }
  if (change > 0 && random_.Unit() >= std::exp(-change / temperature_)) return;
  Leave(a);
  places_[from].sitter = kNobody;
  if (b != kNobody) Leave(b);
  Settle(first_);
  if (b != kNobody) {
    second_.meets[a] = AnyMeet(first_.pieces, second_.pieces);
    second_.crossings += second_.meets[a];
    Settle(second_);
  }
  energy_ += change;
  if (energy_ < bestEnergy_ - 1) Remember();
}

void Annealing::Remember() {
  bestEnergy_ = energy_;
  bestPlaceOf_ = placeOf_;
}

void Annealing::GiveBack() {
  std::vector<bool> taken(places_.size(), false);
  for (std::size_t k = 0; k < bestPlaceOf_.size(); ++k) {
    seating_.seats[k] = places_[bestPlaceOf_[k]].seat;
    taken[bestPlaceOf_[k]] = true;
  }
  seating_.free.clear();
  for (std::size_t place = 0; place < places_.size(); ++place)
    if (!taken[place]) seating_.free.push_back(places_[place].seat);
}

void Annealing::Run(std::size_t steps, double daring) {
  constexpr std::size_t kReach = 24;
  const double cold = crossingCost_ / 100;
  const double hot = std::max(cold, crossingCost_ * daring);
  const std::size_t reach = std::min(kReach, places_.size() - 1);
  for (std::size_t step = 0; step < steps; ++step) {
    temperature_ = hot * std::pow(cold / hot, static_cast<double>(step) / static_cast<double>(steps));
    const std::size_t sitter = random_.Below(placeOf_.size()), distance = 1 + random_.Below(reach);
    const bool forward = random_.Below(2) == 0;
    // Those that cross nothing move in one trial out of four only.
    if (crossings_[sitter] == 0 && random_.Below(4) > 0) continue;
    const std::size_t from = placeOf_[sitter];
    TryExchange(from, (from + (forward ? distance : places_.size() - distance)) % places_.size());
  }
  GiveBack();
}

}  // namespace

void ReduceCrossings(const Scene& scene, Seating& seating, std::size_t steps, double daring, double crossingCost) {
  if (seating.seats.empty() || seating.seats.size() + seating.free.size() < 2) return;
  Annealing(scene, seating, crossingCost).Run(steps, daring);
}

SpotList SpotsOf(const Scene& scene, const Seating& seating) {
  SpotList spots(scene.items.size());
  for (std::size_t k = 0; k < seating.items.size(); ++k)
    if (seating.seats[k].spot.placed)
      spots[seating.items[k]] = SpotOn(scene.items[seating.items[k]], seating.seats[k], seating.frame);
  return spots;
}

}  // namespace zrcallouts::placement
