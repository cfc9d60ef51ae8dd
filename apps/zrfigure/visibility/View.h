#pragma once
// The camera of a figure: an orthographic projection from world millimetres to page pixels. Plain values; no state.

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "visibility/VectorMath.h"

namespace zrfigure {

/// Where the viewer looks from, without scale or position on the page.
struct ViewDirection {
  Vec3 toViewer{0, -1, 0};  ///< Unit vector from the model toward the viewer.
  Vec3 up{0, 0, 1};         ///< Unit vector that points up the page; perpendicular to `toViewer`.
};

/// Reads `iso`, `front`, `top`, `right`, `left`, `back`, `bottom` or "azimuth,elevation" in degrees. Azimuth 0 is the
/// front (viewer at -Y), 90 the right (viewer at +X); elevation 90 is the top. `iso` is 45,35.264: the corner +X, -Y,
/// +Z. \return nothing for anything else; `error` then says what was wrong and what is allowed.
[[nodiscard]] std::optional<ViewDirection> ParseViewDirection(std::string_view text, std::string& error);

/// 4x4 matrix for row vectors: (x, y, z, 1) * m.
struct Matrix4 {
  std::array<std::array<double, 4>, 4> m{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
};

/// An orthographic view of the world on an image of `widthPx` by `heightPx` pixels.
/// Pixel space: x right, y down, z away from the viewer, all three in pixels (z zero at the world point `centre`).
/// The pixel with integer coordinates (i, j) covers [i, i+1) x [j, j+1).
struct View {
  ViewDirection direction;
  int widthPx = 0;
  int heightPx = 0;
  double scale = 1;  ///< Pixels per millimetre of model.
  Vec3 centre;       ///< World point that is shown at `centrePx`.
  Point2 centrePx;

  [[nodiscard]] Vec3 Right() const { return Cross(direction.up, direction.toViewer); }
  /// World millimetres to pixel space, depth in z.
  [[nodiscard]] Vec3 ToPixel(Vec3 world) const;
  [[nodiscard]] Vec3 ToWorld(Vec3 pixel) const;
  /// The same mapping as ToPixel() as a matrix for row vectors.
  [[nodiscard]] Matrix4 WorldToPixel() const;
};

/// Box of the given leaf occurrences in pixel space of `view`; empty when there is no vertex.
[[nodiscard]] Box2 ProjectedBox(const Model& model, std::span<const int> leaves, const View& view);

/// A view of `widthPx` x `heightPx` whose picture of `leaves` fills `target` (pixels) in one direction and is centred
/// in it. A model without extent is shown at scale 1.
[[nodiscard]] View FitView(const Model& model, std::span<const int> leaves, const ViewDirection& direction,
                           const Box2& target, std::array<int, 2> imageSize);

}  // namespace zrfigure
