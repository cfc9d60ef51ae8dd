// Picks by ray casts against boxes. The window is divided into a grid of cells that list the boxes whose projection
// touches them; a ray through a pixel meets the boxes of one cell by the slab method (T. Kay, J. Kajiya, "Ray Tracing
// Complex Scenes", 1986) and takes the nearest in depth, the one added first among equals. How much of a shape instance
// shows, and where it is deepest, is found by a fixed number of rays over its projection: the deepest one is farthest
// from every ray that meets something else. Near-linear in the number of shapes for taking the picture; a look costs
// the rays times the boxes that overlap there.

#include "BoxPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <zrk/Instance.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>

namespace zrk {

namespace {

constexpr int kRaysASide = 9;  // odd, so that one goes through the middle
constexpr int kMaxCellsASide = 32;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

dg::DPoint3D GetCorner(const dg::DBox& box, int corner) {
  return {(corner & 1) != 0 ? box.max.x : box.min.x, (corner & 2) != 0 ? box.max.y : box.min.y,
          (corner & 4) != 0 ? box.max.z : box.min.z};
}

/// Distance from the eye in some unit; constant 1 for a parallel projection, not positive behind the eye.
double GetWeight(const dg::DPoint3D& point, const dg::DMat44& m) {
  return point.x * m.m[0][3] + point.y * m.m[1][3] + point.z * m.m[2][3] + m.m[3][3];
}

double GetDistance(const dg::DPoint2D& left, const dg::DPoint2D& right) {
  return std::hypot(left.x - right.x, left.y - right.y);
}

/// Narrows [near, far] to the part of the line between two planes; false when nothing is left.
bool Clip(double origin, double direction, double low, double high, double& near, double& far) {
  if (direction == 0) return low <= origin && origin <= high;
  const double first = (low - origin) / direction, second = (high - origin) / direction;
  near = std::max(near, std::min(first, second));
  far = std::min(far, std::max(first, second));
  return near <= far;
}

}  // namespace

/// Rays over the projection of one box, with a ring of places around it that belong to something else.
struct BoxPicture::Samples {
  struct Ray {
    dg::DPoint2D at;
    dg::DPoint3D point;
  };
  std::vector<Ray> own;
  std::vector<dg::DPoint2D> foreign;

  [[nodiscard]] double GetClearance(const dg::DPoint2D& at) const {
    double clearance = kInfinity;
    for (const dg::DPoint2D& other : foreign) clearance = std::min(clearance, GetDistance(at, other));
    return clearance;
  }
};

BoxPicture::BoxPicture(const ShapeView& view, const ShapeScene& scene)
    : camera_(view.GetCamera()),
      toPixel_(camera_.GetObjectToPixel()),
      toModel_(toPixel_),
      width_(view.GetWindowWidth()),
      height_(view.GetWindowHeight()),
      changeCount_(scene.GetChangeCount()) {
  if (!toModel_.Invert()) return;
  for (const auto& shape : scene.GetShapeInstances()) {
    if (shape->IsVisible()) AddBox(shape);
  }
  FillCells();
}

bool BoxPicture::IsCurrent(const ShapeView& view, const ShapeScene& scene) const {
  return scene.GetChangeCount() == changeCount_ && view.GetCamera() == camera_ && view.GetWindowWidth() == width_ &&
         view.GetWindowHeight() == height_;
}

void BoxPicture::AddBox(const du::SmartPtr<ShapeInstance>& shape) {
  PlacedBox placed{shape.Get(), shape, shape->GetBoundingBox(), {}, {}};
  const dg::DMat44 toModel = shape->GetLocation().GetXform();
  placed.toLocal = toModel;
  if (placed.box.IsEmpty() || !placed.toLocal.Invert()) return;
  dg::DPoint2D low(kInfinity, kInfinity), high(-kInfinity, -kInfinity);
  for (int corner = 0; corner < 8; ++corner) {
    const dg::DPoint3D point = GetCorner(placed.box, corner) * toModel;
    if (!(GetWeight(point, toPixel_) > 0)) return;  // reaches behind the eye
    const dg::DPoint3D pixel = point * toPixel_;
    low = {std::min(low.x, pixel.x), std::min(low.y, pixel.y)};
    high = {std::max(high.x, pixel.x), std::max(high.y, pixel.y)};
  }
  low = {std::max(low.x, 0.0), std::max(low.y, 0.0)};
  high = {std::min<double>(high.x, width_), std::min<double>(high.y, height_)};
  if (low.x > high.x || low.y > high.y) return;
  placed.pixels = {low, high};
  indexOf_.emplace(placed.shape, boxes_.size());
  boxes_.push_back(std::move(placed));
}

void BoxPicture::FillCells() {
  cellsASide_ = std::clamp(static_cast<int>(std::sqrt(boxes_.size())), 1, kMaxCellsASide);
  cells_.resize(static_cast<std::size_t>(cellsASide_) * cellsASide_);
  for (std::size_t i = 0; i < boxes_.size(); ++i) {
    const dg::DBox2D& pixels = boxes_[i].pixels;
    for (int y = CellOf(pixels.min.y, 1); y <= CellOf(pixels.max.y, 1); ++y) {
      for (int x = CellOf(pixels.min.x, 0); x <= CellOf(pixels.max.x, 0); ++x) {
        cells_[static_cast<std::size_t>(y) * cellsASide_ + x].push_back(i);
      }
    }
  }
}

int BoxPicture::CellOf(double coordinate, int axis) const {
  const double extent = std::max(axis == 0 ? width_ : height_, 1);
  return std::clamp(static_cast<int>(coordinate / extent * cellsASide_), 0, cellsASide_ - 1);
}

bool BoxPicture::Meet(const PlacedBox& box, const dg::DPoint3D& from, const dg::DPoint3D& to, Hit& hit) const {
  const dg::DPoint3D origin = from * box.toLocal;
  const dg::DVec3 direction = to * box.toLocal - origin;
  double near = -kInfinity, far = kInfinity;
  if (!Clip(origin.x, direction.x, box.box.min.x, box.box.max.x, near, far) ||
      !Clip(origin.y, direction.y, box.box.min.y, box.box.max.y, near, far) ||
      !Clip(origin.z, direction.z, box.box.min.z, box.box.max.z, near, far) || !std::isfinite(near)) {
    return false;
  }
  const dg::DVec3 way = to - from;
  hit.shape = box.shape;
  hit.point = {from.x + way.x * near, from.y + way.y * near, from.z + way.z * near};
  hit.depth = (hit.point * toPixel_).z;
  return true;
}

BoxPicture::Hit BoxPicture::Cast(const dg::DPoint2D& pixel) const {
  Hit nearest;
  if (cells_.empty() || pixel.x < 0 || pixel.y < 0 || pixel.x > width_ || pixel.y > height_) return nearest;
  // Depths below 1 lie before the eye in either projection, and the second one is the farther.
  const dg::DPoint3D from = dg::DPoint3D(pixel.x, pixel.y, 0) * toModel_;
  const dg::DPoint3D to = dg::DPoint3D(pixel.x, pixel.y, 0.5) * toModel_;
  for (const std::size_t index :
       cells_[static_cast<std::size_t>(CellOf(pixel.y, 1)) * cellsASide_ + CellOf(pixel.x, 0)]) {
    Hit hit;
    if (Meet(boxes_[index], from, to, hit) && (!nearest.shape || hit.depth < nearest.depth)) nearest = hit;
  }
  return nearest;
}

BoxPicture::Samples BoxPicture::Sample(const PlacedBox& box) const {
  Samples samples;
  const dg::DVec2 step((box.pixels.max.x - box.pixels.min.x) / kRaysASide,
                       (box.pixels.max.y - box.pixels.min.y) / kRaysASide);
  for (int y = -1; y <= kRaysASide; ++y) {
    for (int x = -1; x <= kRaysASide; ++x) {
      const dg::DPoint2D at(box.pixels.min.x + (x + 0.5) * step.x, box.pixels.min.y + (y + 0.5) * step.y);
      const bool inside = x >= 0 && y >= 0 && x < kRaysASide && y < kRaysASide;
      const Hit hit = inside ? Cast(at) : Hit();
      if (hit.shape == box.shape) {
        samples.own.push_back({at, hit.point});
      } else {
        samples.foreign.push_back(at);
      }
    }
  }
  return samples;
}

PickAnswer BoxPicture::Look(const ShapeInstance& shape, const dg::DPoint3D& pixel) const {
  constexpr double kSameDepth = 1e-6;
  PickAnswer answer;
  const auto found = indexOf_.find(&shape);
  if (found == indexOf_.end()) return answer;
  const PlacedBox& box = boxes_[found->second];
  const dg::DPoint2D middle((box.pixels.min.x + box.pixels.max.x) / 2, (box.pixels.min.y + box.pixels.max.y) / 2);
  const Samples samples = Sample(box);
  double offCentre = 0;
  for (const Samples::Ray& ray : samples.own) {
    const double clearance = samples.GetClearance(ray.at);
    const double off = GetDistance(ray.at, middle);
    const bool better = clearance > answer.clearance || (clearance == answer.clearance && off < offCentre);
    if (answer.isVisible && !better) continue;
    answer.isVisible = true;
    answer.deepest = ray.point;
    answer.clearance = clearance;
    offCentre = off;
  }
  const dg::DPoint2D at(pixel.x, pixel.y);
  const Hit hit = Cast(at);
  if (hit.shape != &shape) return answer;
  const bool same = std::fabs(hit.depth - pixel.z) <= kSameDepth * std::max(1.0, std::fabs(hit.depth));
  answer.place = same ? PickAnswer::Place::SamePoint : PickAnswer::Place::OtherPoint;
  answer.atPixel = hit.point;
  answer.clearanceAtPixel = samples.GetClearance(at);
  if (answer.isVisible) return answer;
  // Too narrow for the rays over it, and yet it shows here.
  answer.isVisible = true;
  answer.deepest = hit.point;
  answer.clearance = answer.clearanceAtPixel;
  return answer;
}

}  // namespace zrk
