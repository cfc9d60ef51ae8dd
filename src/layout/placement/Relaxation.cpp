// The sum of leader lengths of a side is convex in the ports' positions. It is minimised by iteratively reweighted
// least squares (Weiszfeld: Sur le point pour lequel la somme des distances de n points donnes est minimum, 1937): each
// round replaces a distance by a square weighted with its present inverse, which isotonic regression minimises exactly.
// What labels and lanes need between each other is boiled down to one least gap between successive ports. These gaps
// start at the present distances, which are valid, and give away what no pair of labels needs.
// Cost per round: linear in the labels of a side times its rings.
#include "layout/placement/Relaxation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "layout/placement/IsotonicRegression.h"

namespace zrcallouts::placement {

namespace {

/// One seated label in the coordinates of its side.
struct Sitter {
  std::size_t index = 0;  ///< Into the seats.
  Coord port = 0;
  Coord before = 0, after = 0;  ///< From the label's low edge to the port, and from there to its high edge.
  SidePoint low, high;
};

/// Port `later` stands at least `least` after port `earlier`.
struct Separation {
  std::size_t earlier = 0, later = 0;
  Coord least = 0;
};

class SideRelaxation {
public:
  SideRelaxation(const Scene& scene, const RingTask& task) : scene_(scene), task_(task) {}

  void Add(std::size_t index, const Seat& seat);
  void Run(const std::vector<std::size_t>& items, std::vector<Seat>& seats);

private:
  [[nodiscard]] Coord LeastBetween(const Sitter& earlier, const Sitter& later) const;
  [[nodiscard]] std::vector<Separation> Separations() const;
  [[nodiscard]] std::vector<double> LeastGaps() const;
  void FindBounds();
  [[nodiscard]] std::vector<double> Improve(const std::vector<std::size_t>& items, std::vector<double> ports) const;

  const Scene& scene_;

  const RingTask& task_;
  std::vector<Sitter> sitters_;
  std::vector<double> lowest_, highest_;  ///< Bounds of the ports.
};

void SideRelaxation::Add(std::size_t index, const Seat& seat) {
  const auto [low, high] = task_.edge.ToSide(seat.spot.box);
  const Coord port = task_.edge.ToSide(seat.spot.port).u;
  sitters_.push_back({index, port, port - low.u, high.u - port, low, high});
}

/// What two labels need between their ports.
Coord SideRelaxation::LeastBetween(const Sitter& earlier, const Sitter& later) const {
  Coord least = task_.lane;
  if (earlier.low.v < later.high.v && later.low.v < earlier.high.v)
    least = std::max(least, earlier.after + task_.gap + later.before);
  if (earlier.low.v < later.low.v) least = std::max(least, earlier.after + task_.lane);
  if (later.low.v < earlier.low.v) least = std::max(least, task_.lane + later.before);
  return std::min(least, later.port - earlier.port);
}

std::vector<Separation> SideRelaxation::Separations() const {
  // More labels than this cannot stand between two that hold each other off.
  constexpr std::size_t kReach = 24;
  std::vector<Separation> separations;
  for (std::size_t j = 0; j < sitters_.size(); ++j) {
    for (std::size_t i = j - std::min(j, kReach); i < j; ++i) {
      const Coord least = LeastBetween(sitters_[i], sitters_[j]);
      const Coord implied = static_cast<Coord>(j - i) * task_.lane;
      if (least > implied || i + 1 == j) separations.push_back({i, j, least});
    }
  }
  return separations;
}

std::vector<double> SideRelaxation::LeastGaps() const {
  std::vector<Coord> gaps(sitters_.size(), 0);
  for (std::size_t k = 1; k < gaps.size(); ++k) gaps[k] = sitters_[k].port - sitters_[k - 1].port;
  const std::vector<Separation> separations = Separations();
  // Half of what is to spare first, so that it is not all taken from the first gaps.
  for (const Coord share : {2, 1}) {
    std::vector<std::vector<std::size_t>> spanning(gaps.size());
    for (std::size_t c = 0; c < separations.size(); ++c)
      for (std::size_t k = separations[c].earlier + 1; k <= separations[c].later; ++k) spanning[k].push_back(c);
    for (std::size_t k = 1; k < gaps.size(); ++k) {
      Coord spare = gaps[k];
      for (const std::size_t c : spanning[k]) {
        Coord span = 0;
        for (std::size_t m = separations[c].earlier + 1; m <= separations[c].later; ++m) span += gaps[m];
        spare = std::min(spare, span - separations[c].least);
      }
      gaps[k] -= spare / share;
    }
  }
  return {gaps.begin(), gaps.end()};
}

void SideRelaxation::FindBounds() {
  lowest_.clear();
  highest_.clear();
  const std::vector<SideBox> hindrances = Hindrances(scene_, task_.edge);
  for (const Sitter& sitter : sitters_) {
    Coord low = std::max(task_.portLow, task_.boxLow + sitter.before);
    Coord high = std::min(task_.portHigh, task_.boxHigh - sitter.after);
    for (const auto& [from, to] : hindrances) {
      const bool label = from.v < sitter.high.v && sitter.low.v < to.v;
      const bool lane = 0 < to.v && from.v < sitter.low.v;
      if (!label && !lane) continue;
      const Coord before = label ? sitter.before + task_.gap : task_.lane;
      const Coord after = label ? sitter.after + task_.gap : task_.lane;
      if (to.u + before <= sitter.port) low = std::max(low, to.u + before);
      if (sitter.port <= from.u - after) high = std::min(high, from.u - after);
    }
    lowest_.push_back(static_cast<double>(std::min(low, sitter.port)));
    highest_.push_back(static_cast<double>(std::max(high, sitter.port)));
  }
}

std::vector<double> SideRelaxation::Improve(const std::vector<std::size_t>& items, std::vector<double> ports) const {
  constexpr int kRounds = 6;
  const std::vector<double> gaps = LeastGaps();
  std::vector<double> wished(ports.size()), weights(ports.size());
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t k = 0; k < ports.size(); ++k) {
      double sum = 0, weight = 0;
      for (const FixedPoint anchor : scene_.items[items[sitters_[k].index]].anchors) {
        const SidePoint at = task_.edge.ToSide(anchor);
        const double along = static_cast<double>(at.u) - ports[k], across = static_cast<double>(at.v);
        const double pull = 1 / std::max(1.0, std::sqrt(along * along + across * across));
        sum += pull * static_cast<double>(at.u);
        weight += pull;
      }
      wished[k] = sum / weight;
      weights[k] = weight;
    }
    ports = SpacedPositions({wished, weights, gaps, lowest_, highest_});
  }
  return ports;
}

void SideRelaxation::Run(const std::vector<std::size_t>& items, std::vector<Seat>& seats) {
  std::sort(sitters_.begin(), sitters_.end(),
            [](const Sitter& a, const Sitter& b) { return std::tie(a.port, a.index) < std::tie(b.port, b.index); });
  FindBounds();
  std::vector<double> ports;
  for (const Sitter& sitter : sitters_) ports.push_back(static_cast<double>(sitter.port));
  ports = Improve(items, std::move(ports));
  for (std::size_t k = 0; k < sitters_.size(); ++k) {
    const Sitter& sitter = sitters_[k];
    const Coord port = static_cast<Coord>(std::llround(ports[k]));
    LabelSpot& spot = seats[sitter.index].spot;
    spot.box = task_.edge.ToPage({port - sitter.before, sitter.low.v}, {port + sitter.after, sitter.high.v});
    spot.attach = task_.edge.ToPage(SidePoint{port, task_.edge.ToSide(spot.attach).v});
    spot.port = task_.edge.ToPage(SidePoint{port, task_.edge.ToSide(spot.port).v});
  }
}

}  // namespace

void RelaxSeats(const Scene& scene, const RingPlan& plan, const std::vector<std::size_t>& items,
                std::vector<Seat>& seats) {
  for (std::size_t s = 0; s < kSides.size(); ++s) {
    const RingTask task = MakeRingTask(scene, plan, s);
    SideRelaxation side(scene, task);
    for (std::size_t k = 0; k < seats.size(); ++k)
      if (seats[k].spot.placed && seats[k].side == s) side.Add(k, seats[k]);
    side.Run(items, seats);
  }
}

}  // namespace zrcallouts::placement
