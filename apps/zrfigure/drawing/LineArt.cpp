#include "drawing/LineArt.h"

#include <map>

#include "drawing/LineSmoothing.h"
#include "drawing/MeshLines.h"
#include "drawing/VisibleRuns.h"
#include "visibility/ParallelFor.h"

namespace zrfigure {
namespace {

constexpr double kTickLength = 8;      // Pixels; a shorter line must be joined to something.
constexpr double kJoinDistance = 2;    // Pixels.
constexpr double kSmall = 24;          // Pixels; an occurrence not larger than this gets narrow lines only.
constexpr double kStraightness = 0.1;  // Pixels a dropped point may lie off the line.

struct CandidateLine {
  ArtLine line;
  bool contour = false;
};

bool IsShort(const CandidateLine& candidate) {
  const auto& points = candidate.line.points;
  return PolylineLength(points) < kTickLength && Distance(points.front(), points.back()) > 0;
}

// Silhouettes that may themselves be ticks hold nothing.
bool IsHeld(const std::vector<CandidateLine>& lines, std::size_t self, Point2 p) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i == self || (lines[i].contour && IsShort(lines[i]))) continue;
    const auto& points = lines[i].line.points;
    for (std::size_t k = 1; k < points.size(); ++k) {
      if (DistanceToSegment(p, points[k - 1], points[k]) < kJoinDistance) return true;
    }
  }
  return false;
}

// Nearly edge-on twisted faces leave short pieces of silhouette beside the real one, and coarse facets short pieces of
// crease. A short silhouette must be held at both ends, a short edge at one.
void DropTicks(std::vector<CandidateLine>& lines) {
  std::vector<CandidateLine> kept;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto& points = lines[i].line.points;
    bool keep = true;
    if (IsShort(lines[i])) {
      const bool start = IsHeld(lines, i, points.front()), end = IsHeld(lines, i, points.back());
      keep = lines[i].contour ? start && end : start || end;
    }
    if (keep) kept.push_back(lines[i]);
  }
  lines = std::move(kept);
}

// Wide lines would fill such an occurrence.
bool IsSmall(const std::vector<CandidateLine>& lines) {
  Box2 box;
  for (const CandidateLine& line : lines) {
    for (const Point2 p : line.line.points) box.Add(p);
  }
  return std::max(box.Width(), box.Height()) < kSmall;
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
  const bool small = IsSmall(candidates);
  std::vector<ArtLine> lines;
  for (CandidateLine& candidate : candidates) {
    auto& points = candidate.line.points;
    if (candidate.contour) points = Smoothed(points);  // Interpolated normals make it wiggle from facet to facet.
    points = Simplified(points, kStraightness);
    if (small) candidate.line.lineClass = LineClass::Edge;
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
