#include "drawing/LineWeights.h"

#include "drawing/LineSmoothing.h"

namespace zrfigure {
namespace {

constexpr double kMostInk = 0.17;
constexpr LineWidths kGroups[] = {{0.5, 0.25, 0.18}, {0.35, 0.18, 0.18}, {0.25, 0.13, 0.13}};

}  // namespace

LineWidths SuitableLineWidths(const std::vector<ArtLine>& lines, const std::vector<VisibleRegion>& regions) {
  double outlines = 0, edges = 0, picture = 0;
  for (const ArtLine& line : lines) {
    (line.lineClass == LineClass::Outline ? outlines : edges) += PolylineLength(line.points);
  }
  for (const VisibleRegion& region : regions) picture += static_cast<double>(region.pixelCount);
  for (const LineWidths& group : kGroups) {
    const double ink = (outlines * group.outline + edges * group.edge) * kPxPerMm;
    if (ink <= kMostInk * picture) return group;
  }
  return kGroups[2];
}

}  // namespace zrfigure
