#include "visibility/IdBuffer.h"

#include "visibility/ParallelFor.h"
#include "visibility/VisibilityScene.h"

namespace zrfigure {
namespace {

// The part of the image that the scene's box can cover; pixels outside it need no ray.
std::array<int, 4> CoveredPixels(const VisibilityScene& scene, const View& view) {
  const Box3& bounds = scene.Bounds();
  if (bounds.Empty()) return {0, 0, 0, 0};
  Box2 box;
  for (int corner = 0; corner < 8; ++corner) {
    const Vec3 pixel = view.ToPixel({corner & 1 ? bounds.max.x : bounds.min.x, corner & 2 ? bounds.max.y : bounds.min.y,
                                     corner & 4 ? bounds.max.z : bounds.min.z});
    box.Add({pixel.x, pixel.y});
  }
  const auto clamp = [](double value, int limit) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(limit)));
  };
  return {clamp(std::floor(box.minX) - 1, view.widthPx), clamp(std::floor(box.minY) - 1, view.heightPx),
          clamp(std::ceil(box.maxX) + 1, view.widthPx), clamp(std::ceil(box.maxY) + 1, view.heightPx)};
}

}  // namespace

IdBuffer RenderIdBuffer(const VisibilityScene& scene, const View& view) {
  IdBuffer buffer;
  buffer.width = view.widthPx;
  buffer.height = view.heightPx;
  const std::size_t count = static_cast<std::size_t>(view.widthPx) * view.heightPx;
  buffer.ids.assign(count, IdBuffer::kBackground);
  buffer.depths.assign(count, std::numeric_limits<float>::infinity());
  const auto [left, top, right, bottom] = CoveredPixels(scene, view);
  const int firstRow = top, firstColumn = left, endColumn = right;
  ParallelFor(bottom - top, [&](int row) {
    const int y = firstRow + row;
    for (int x = firstColumn; x < endColumn; ++x) {
      const auto hit = scene.Pick(view, {x + 0.5, y + 0.5});
      if (!hit) continue;
      const std::size_t at = static_cast<std::size_t>(y) * view.widthPx + x;
      buffer.ids[at] = hit->occurrence;
      buffer.depths[at] = static_cast<float>(hit->depth);
    }
  });
  return buffer;
}

}  // namespace zrfigure
