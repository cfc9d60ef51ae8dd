#include "drawing/LineArt.h"

#include <map>

#include "drawing/MeshLines.h"
#include "drawing/VisibleRuns.h"
#include "visibility/ParallelFor.h"

namespace zrfigure {
namespace {

constexpr double kTickLength = 8;    // Pixels; a silhouette shorter than this must be joined to something at both ends.
constexpr double kJoinDistance = 2;  // Pixels.
constexpr double kStraightness = 0.1;  // Pixels a dropped point may lie off the line.

double LengthOf(const std::vector<Point2>& points) {
  double length = 0;
  for (std::size_t i = 1; i < points.size(); ++i) length += Distance(points[i - 1], points[i]);
  return length;
}

double DistanceToSegment(Point2 p, Point2 a, Point2 b) {
  const Point2 ab = b - a, ap = p - a;
  const double squared = ab.x * ab.x + ab.y * ab.y;
  const double t = squared > 0 ? std::clamp((ap.x * ab.x + ap.y * ab.y) / squared, 0.0, 1.0) : 0;
  return Distance(p, a + ab * t);
}

// Drops points that the straight line between their neighbours replaces (D. Douglas, T. Peucker, 1973). An explicit
// stack, because a thread's helix has more points than the call stack has room for.
std::vector<Point2> Simplified(const std::vector<Point2>& points) {
  std::vector<bool> keep(points.size());
  keep.front() = keep.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> open{{0, points.size() - 1}};
  while (!open.empty()) {
    const auto [first, last] = open.back();
    open.pop_back();
    double worst = kStraightness;
    std::size_t at = first;
    for (std::size_t i = first + 1; i < last; ++i) {
      const double distance = DistanceToSegment(points[i], points[first], points[last]);
      if (distance > worst) worst = distance, at = i;
    }
    if (at == first) continue;
    keep[at] = true;
    open.emplace_back(first, at);
    open.emplace_back(at, last);
  }
  std::vector<Point2> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (keep[i]) kept.push_back(points[i]);
  }
  return kept;
}

struct CandidateLine {
  ArtLine line;
  bool contour = false;
};

bool IsTick(const CandidateLine& candidate) {
  return candidate.contour && LengthOf(candidate.line.points) < kTickLength;
}

bool Touches(const std::vector<CandidateLine>& lines, Point2 p) {
  return std::ranges::any_of(lines, [&](const CandidateLine& other) {
    if (IsTick(other)) return false;
    const auto& points = other.line.points;
    for (std::size_t i = 1; i < points.size(); ++i) {
      if (DistanceToSegment(p, points[i - 1], points[i]) < kJoinDistance) return true;
    }
    return false;
  });
}

// Nearly edge-on twisted faces leave short pieces of silhouette beside the real one; nothing holds them at both ends.
void DropTicks(std::vector<CandidateLine>& lines) {
  std::vector<CandidateLine> kept;
  for (const CandidateLine& line : lines) {
    const auto& points = line.line.points;
    if (!IsTick(line) || (Touches(lines, points.front()) && Touches(lines, points.back()))) kept.push_back(line);
  }
  lines = std::move(kept);
}

std::vector<ArtLine> LinesOfOccurrence(const LineArtInput& input, const MeshLines& mesh, int occurrence) {
  const OccurrenceView view(input, occurrence, mesh.Closed());
  std::vector<CandidateLine> candidates;
  const auto add = [&](const LineChain& chain) {
    for (ArtLine& line : VisibleRuns(view, chain)) candidates.push_back({std::move(line), chain.contour});
  };
  for (const LineChain& chain : mesh.SharpEdges()) add(chain);
  for (const LineChain& chain : mesh.Contours(view.ToViewerInPart())) add(chain);
  DropTicks(candidates);
  std::vector<ArtLine> lines;
  for (CandidateLine& candidate : candidates) {
    candidate.line.points = Simplified(candidate.line.points);
    lines.push_back(std::move(candidate.line));
  }
  return lines;
}

}  // namespace

std::vector<ArtLine> DrawLineArt(const LineArtInput& input) {
  std::vector<int> leaves(input.leaves.begin(), input.leaves.end());
  std::ranges::sort(leaves);
  std::map<int, std::unique_ptr<MeshLines>> meshes;
  for (const int leaf : leaves) meshes.try_emplace(input.model.occurrences[leaf].product);
  std::vector<std::pair<const int, std::unique_ptr<MeshLines>>*> products;
  for (auto& entry : meshes) products.push_back(&entry);
  ParallelFor(static_cast<int>(products.size()), [&](int i) {
    products[i]->second = std::make_unique<MeshLines>(input.model.products[products[i]->first].mesh);
  });

  std::vector<std::vector<ArtLine>> byLeaf(leaves.size());
  ParallelFor(static_cast<int>(leaves.size()), [&](int i) {
    byLeaf[i] = LinesOfOccurrence(input, *meshes.at(input.model.occurrences[leaves[i]].product), leaves[i]);
  });
  std::vector<ArtLine> lines;
  for (auto& part : byLeaf) std::move(part.begin(), part.end(), std::back_inserter(lines));
  return lines;
}

}  // namespace zrfigure
