// Greedy choice with one round of second thoughts. A candidate costs its way out of the drawing, plus a price for
// little room round it, for being partly covered, and for each chosen anchor near it. Items with few candidates choose
// first, since they have no way to make room for others; afterwards each item chooses once more among all others'
// choices. Cost: candidates times items, twice.
#include "commands/AnchorChoice.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <tuple>

namespace zrfigure {
namespace {

constexpr double kEnoughClearance = 6;  ///< Pixels that the dot of a leader needs round it.
constexpr double kTinyPrice = 60;       ///< For each pixel of clearance that is missing.
constexpr double kMostClearanceGain = 40;
constexpr double kCoveredPrice = 300;  ///< For a part that is covered altogether, by what is seen of the best one.
constexpr double kCrowdRadius = 90;    ///< Pixels: anchors nearer than this are in each other's way.
constexpr double kKeepShare = 0.7;     ///< A pinned anchor stays while it has this share of the best clearance.

/// A place where a leader can end.
struct Candidate {
  int target = -1;  ///< The selected occurrence, or the weldment above it.
  Point2 at;
  double clearance = 0;                   ///< 0 for what cannot be seen.
  double pixels = 0;                      ///< Size of what is seen.
  const VisibleRegion* region = nullptr;  ///< Null for what cannot be seen.
};

/// What gets one leader: an item, or a part of it when parts have leaders of their own.
struct Claim {
  int group = 0;             ///< Claims of a group want the same picture.
  std::vector<int> targets;  ///< Ascending.
  std::vector<Candidate> candidates;
  std::size_t chosen = 0;

  [[nodiscard]] bool IsSeen() const { return !candidates.empty() && candidates.front().region != nullptr; }
  [[nodiscard]] double BestClearance() const {
    double best = 0;
    for (const Candidate& candidate : candidates) best = std::max(best, candidate.clearance);
    return best;
  }
};

double WayOut(Point2 at, const Box2& box) {
  return std::max(0.0, std::min({at.x - box.minX, box.maxX - at.x, at.y - box.minY, box.maxY - at.y}));
}

double OwnCost(const Candidate& candidate, double mostPixels, const Box2& box) {
  const double missing = std::max(0.0, kEnoughClearance - candidate.clearance);
  const double covered = mostPixels > 0 ? 1 - candidate.pixels / mostPixels : 0;
  return WayOut(candidate.at, box) + kTinyPrice * missing + kCoveredPrice * covered -
         std::min(candidate.clearance, kMostClearanceGain);
}

/// Chooses among the candidates of all claims of one picture.
class Chooser {
public:
  Chooser(std::vector<Claim*> claims, const Box2& box, const std::set<int>& pinned)
      : claims_(std::move(claims)), box_(box), pinned_(pinned) {}

  void Run() {
    std::vector<std::size_t> order(claims_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
      return claims_[a]->candidates.size() < claims_[b]->candidates.size();
    });
    settled_.assign(claims_.size(), false);
    for (int round = 0; round < 2; ++round) {
      for (std::size_t i : order) Choose(i);
    }
  }

private:
  void Choose(std::size_t i) {
    Claim& claim = *claims_[i];
    settled_[i] = false;
    double best = 0, mostPixels = 0;
    for (const Candidate& candidate : claim.candidates) mostPixels = std::max(mostPixels, candidate.pixels);
    for (std::size_t k = 0; k < claim.candidates.size(); ++k) {
      const double cost =
          OwnCost(claim.candidates[k], mostPixels, box_) + Crowd(claim.candidates[k].at) - PinGain(claim, k);
      if (k > 0 && cost >= best) continue;
      best = cost;
      claim.chosen = k;
    }
    settled_[i] = true;
  }

  [[nodiscard]] double Crowd(Point2 at) const {
    double sum = 0;
    for (std::size_t i = 0; i < claims_.size(); ++i) {
      if (!settled_[i] || claims_[i]->candidates.empty()) continue;
      sum += std::max(0.0, kCrowdRadius - Distance(at, claims_[i]->candidates[claims_[i]->chosen].at));
    }
    return sum;
  }

  [[nodiscard]] double PinGain(const Claim& claim, std::size_t k) const {
    constexpr double kAlways = 1e9;
    const Candidate& candidate = claim.candidates[k];
    const int leaf = candidate.region != nullptr ? candidate.region->occurrence : candidate.target;
    if (pinned_.count(leaf) == 0 && pinned_.count(candidate.target) == 0) return 0;
    return candidate.clearance >= kKeepShare * std::min(claim.BestClearance(), kMostClearanceGain) ? kAlways : 0;
  }

  const std::vector<Claim*> claims_;
  const Box2 box_;
  const std::set<int>& pinned_;
  std::vector<bool> settled_;
};

/// The nearest of `targets` at or above a leaf; -1 for none.
int TargetOf(const OccurrenceTree& tree, const std::set<int>& targets, int leaf) {
  while (leaf >= 0 && targets.count(leaf) == 0) leaf = tree.GetModel().occurrences[leaf].parent;
  return leaf;
}

Point2 MiddleOf(const OccurrenceTree& tree, int target, const View& view) {
  if (tree.Children(target).empty()) return ProjectedBox(tree.GetModel(), std::vector{target}, view).Centre();
  std::vector<int> leaves;
  for (int leaf : tree.Leaves()) {
    if (tree.IsWithin(leaf, target)) leaves.push_back(leaf);
  }
  return ProjectedBox(tree.GetModel(), leaves, view).Centre();
}

std::vector<Claim> MakeClaims(const AnchorRequest& request) {
  std::set<int> wanted;
  for (int occurrence : request.selected) wanted.insert(request.tree.CalloutTarget(occurrence));
  std::vector<Claim> claims;
  int group = 0;
  for (const PlannedRow& row : request.rows) {
    ++group;
    bool first = true;
    for (int occurrence : row.occurrences) {
      if (wanted.count(occurrence) == 0) continue;
      if (request.mode == CalloutMode::PerInstance) ++group;
      if (first || request.mode != CalloutMode::OnePerItem) claims.push_back({group, {}, {}, 0});
      claims.back().targets.push_back(occurrence);
      first = false;
    }
  }
  for (Claim& claim : claims) std::sort(claim.targets.begin(), claim.targets.end());
  return claims;
}

/// Candidates of every claim in one picture; those that are seen, or, for a claim without any, all parts.
std::vector<std::vector<Candidate>> FindCandidates(const OccurrenceTree& tree, const std::vector<Claim>& claims,
                                                   const Picture& picture) {
  std::set<int> targets;
  std::map<int, std::size_t> claimOf;
  for (std::size_t i = 0; i < claims.size(); ++i) {
    for (int target : claims[i].targets) claimOf[target] = i;
    targets.insert(claims[i].targets.begin(), claims[i].targets.end());
  }
  std::vector<std::vector<Candidate>> candidates(claims.size());
  for (const VisibleRegion& region : picture.regions) {
    const int target = TargetOf(tree, targets, region.occurrence);
    if (target < 0) continue;
    candidates[claimOf[target]].push_back({target,
                                           {region.x + 0.5, region.y + 0.5},
                                           region.clearancePx,
                                           static_cast<double>(region.pixelCount),
                                           &region});
  }
  return candidates;
}

void AddUnseen(const OccurrenceTree& tree, Claim& claim, const View& view) {
  for (int target : claim.targets) claim.candidates.push_back({target, MiddleOf(tree, target, view), 0, 0, nullptr});
}

double BestOf(const std::vector<Candidate>& candidates) {
  double best = 0;
  for (const Candidate& candidate : candidates) best = std::max(best, candidate.clearance);
  return best;
}

/// Gives each claim its picture and its candidates there. Claims of one group go to one picture.
std::vector<std::size_t> Divide(const OccurrenceTree& tree, const std::vector<Picture>& pictures,
                                std::vector<Claim>& claims) {
  std::map<int, std::pair<double, std::size_t>> bestOfGroup;
  std::vector<std::vector<std::vector<Candidate>>> found;
  for (std::size_t p = 0; p < pictures.size(); ++p) {
    found.push_back(FindCandidates(tree, claims, pictures[p]));
    for (std::size_t i = 0; i < claims.size(); ++i) {
      auto& best = bestOfGroup[claims[i].group];
      if (BestOf(found[p][i]) > best.first) best = {BestOf(found[p][i]), p};
    }
  }
  std::vector<std::size_t> pictureOf;
  for (std::size_t i = 0; i < claims.size(); ++i) {
    pictureOf.push_back(bestOfGroup[claims[i].group].second);
    claims[i].candidates = std::move(found[pictureOf[i]][i]);
    if (claims[i].candidates.empty()) AddUnseen(tree, claims[i], pictures[pictureOf[i]].view);
  }
  return pictureOf;
}

}  // namespace

std::vector<PictureCallouts> ChooseAnchors(const AnchorRequest& request, const std::vector<Picture>& pictures) {
  std::vector<Claim> claims = MakeClaims(request);
  const std::vector<std::size_t> pictureOf = Divide(request.tree, pictures, claims);
  const std::set<int> pinned(request.pinned.begin(), request.pinned.end());
  std::vector<PictureCallouts> result(pictures.size());
  std::vector<std::set<int>> targets(pictures.size());
  for (std::size_t p = 0; p < pictures.size(); ++p) {
    std::vector<Claim*> here;
    for (std::size_t i = 0; i < claims.size(); ++i) {
      if (pictureOf[i] == p) here.push_back(&claims[i]);
    }
    Chooser(here, pictures[p].modelBox, pinned).Run();
    for (const Claim* claim : here) {
      const Candidate& chosen = claim->candidates[claim->chosen];
      if (chosen.region != nullptr) result[p].regions.push_back(*chosen.region);
      if (claim->IsSeen()) targets[p].insert(claim->targets.begin(), claim->targets.end());
      if (!claim->IsSeen() && !request.skipHidden) targets[p].insert(chosen.target);
    }
    std::ranges::sort(result[p].regions, {}, &VisibleRegion::occurrence);
  }
  for (int occurrence : request.selected) {
    for (std::size_t p = 0; p < pictures.size(); ++p) {
      if (targets[p].count(request.tree.CalloutTarget(occurrence)) > 0) result[p].selected.push_back(occurrence);
    }
  }
  return result;
}

}  // namespace zrfigure
