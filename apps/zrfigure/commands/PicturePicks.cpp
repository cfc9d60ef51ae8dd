#include "commands/PicturePicks.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <zrk/PickEvent.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>

namespace zrfigure {
namespace {

constexpr double kSameDepthPx = 1.5;  ///< A surface this near in depth is the one asked about.
constexpr double kSurePx = 2;         ///< Clearance at which every point of a pixel is on its part.

dg::DPoint3D ToHost(Vec3 point) {
  return {point.x, point.y, point.z};
}

struct PixelAt {
  int x = 0, y = 0;
};

/// Pixels round one, the nearest first.
constexpr PixelAt kAround[] = {{0, 0}, {0, -1}, {-1, 0}, {1, 0}, {0, 1}, {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};

/// Distance to the nearest pixel of another id, ring by ring: the work is in proportion to its square, and the discs of
/// deepest points do not overlap.
double ClearanceAt(const IdBuffer& ids, PixelAt at) {
  const std::int32_t id = ids.At(at.x, at.y);
  double nearest = std::numeric_limits<double>::infinity();
  for (int ring = 1; ring < nearest; ++ring) {
    for (int along = -ring; along <= ring; ++along) {
      const PixelAt offsets[] = {{along, -ring}, {along, ring}, {-ring, along}, {ring, along}};
      for (const PixelAt& offset : offsets) {
        if (ids.At(at.x + offset.x, at.y + offset.y) != id) nearest = std::min(nearest, std::hypot(offset.x, offset.y));
      }
    }
  }
  return nearest;
}

/// Whether depths round a pixel are nearly those of the pixel itself.
bool IsSmooth(const IdBuffer& ids, PixelAt at) {
  const auto depthAt = [&](int x, int y) { return ids.depths[static_cast<std::size_t>(y) * ids.width + x]; };
  return std::ranges::all_of(kAround, [&](const PixelAt& offset) {
    return std::abs(depthAt(at.x + offset.x, at.y + offset.y) - depthAt(at.x, at.y)) <= 2 * kSameDepthPx;
  });
}

/// What stands at the pixel and its neighbours, as the hidden-end test of figures has it.
void LookAtPixel(const IdBuffer& ids, const View& view, int occurrence, const dg::DPoint3D& pixel,
                 zrk::PickAnswer& answer) {
  const PixelAt centre{static_cast<int>(std::floor(pixel.x)), static_cast<int>(std::floor(pixel.y))};
  for (const PixelAt& offset : kAround) {
    const PixelAt at{centre.x + offset.x, centre.y + offset.y};
    if (ids.At(at.x, at.y) != occurrence) continue;
    const double depth = ids.depths[static_cast<std::size_t>(at.y) * ids.width + at.x];
    answer.atPixel = ToHost(view.ToWorld({at.x + 0.5, at.y + 0.5, depth}));
    answer.clearanceAtPixel = ClearanceAt(ids, at);
    // A point next to another part or to a step of its own may lie beside or behind what its pixel shows: it is put
    // right at its pixel.
    const bool sure = offset.x == 0 && offset.y == 0 && answer.clearanceAtPixel >= kSurePx && IsSmooth(ids, at);
    const bool same = sure && std::abs(depth - pixel.z) <= kSameDepthPx;
    answer.place = same ? zrk::PickAnswer::Place::SamePoint : zrk::PickAnswer::Place::OtherPoint;
    return;
  }
}

}  // namespace

PicturePicks::PicturePicks(const HostStructure& structure, const View& view, const dg::Camera3D& camera, IdBuffer ids)
    : structure_(structure),
      view_(view),
      camera_(camera),
      ids_(std::move(ids)),
      regions_(FindVisibleRegions(ids_, view_)) {}

PicturePicks::~PicturePicks() = default;

void PicturePicks::RequestPick(const du::SmartPtr<zrk::PickEvent>& event) {
  const du::SmartPtr<zrk::ShapeView> view = event->GetView();
  if (!view || view->GetCamera() != camera_) return;
  const int occurrence = structure_.FindOccurrence(event->GetShapeInstance());
  zrk::PickAnswer answer;
  if (const VisibleRegion* region = FindRegion(regions_, occurrence)) {
    answer.isVisible = true;
    answer.deepest = ToHost(region->worldPoint);
    answer.clearance = region->clearancePx;
    LookAtPixel(ids_, view_, occurrence, event->GetPixel(), answer);
  }
  event->Answer(answer);
}

}  // namespace zrfigure
