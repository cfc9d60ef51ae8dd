#pragma once
// Ray queries against an imported model: one acceleration structure a distinct part, one instance a leaf occurrence.
// Owns copies of the triangles; the model may go away. All const operations may run on any number of threads at once.

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "visibility/View.h"

namespace zrfigure {

/// What a ray met first.
struct PickHit {
  int occurrence = -1;  ///< Index into Model::occurrences.
  Vec3 point;           ///< World millimetres, on the surface.
  double depth = 0;     ///< z of the point in the view's pixel space.
};

/// Asks whether something stands between a point and the viewer.
struct OcclusionQuery {
  Vec3 point;               ///< World millimetres.
  Vec3 toViewer;            ///< Unit vector.
  double tolerance = 0;     ///< Surfaces nearer than this (mm along the ray) do not hide the point.
  int ownOccurrence = -1;   ///< The occurrence the point belongs to, -1 for none.
  double ownTolerance = 0;  ///< As `tolerance`, for surfaces of the own occurrence; used when larger.
};

class VisibilityScene {
public:
  VisibilityScene(const Model& model, std::span<const int> leaves);
  explicit VisibilityScene(const Model& model);
  ~VisibilityScene();
  VisibilityScene(VisibilityScene&&) noexcept;
  VisibilityScene& operator=(VisibilityScene&&) noexcept;

  /// Leaves the given occurrences only in the scene; unknown ones are ignored. Must not run beside a query.
  void SetShown(std::span<const int> occurrences);

  [[nodiscard]] bool Occluded(const OcclusionQuery& query) const;

  /// First surface under a point of the image (pixel coordinates, not rounded); nothing over the background.
  [[nodiscard]] std::optional<PickHit> Pick(const View& view, Point2 pixel) const;

  /// World box of all leaf occurrences, shown or not.
  [[nodiscard]] const Box3& Bounds() const;

private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zrfigure
