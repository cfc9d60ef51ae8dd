#include "drawing/LineArt.h"

#include <map>

#include "drawing/LineSmoothing.h"
#include "drawing/LineTicks.h"
#include "drawing/MeshLines.h"
#include "drawing/VisibleRuns.h"
#include "visibility/ParallelFor.h"

namespace zrfigure {
namespace {

constexpr double kSmall = 24;          // Pixels; an occurrence not larger than this gets narrow lines only.
constexpr double kStraightness = 0.1;  // Pixels a dropped point may lie off the line.

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
  DropTicks(candidates, input.ids);
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
