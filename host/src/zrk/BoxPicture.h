#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <dg/Camera3D.h>
#include <dg/DBox.h>
#include <dg/DBox2D.h>
#include <dg/DMat44.h>
#include <du/SmartPtr.h>
#include <zrk/PickAnswer.h>

namespace zrk {

class ShapeInstance;
class ShapeScene;
class ShapeView;

/// What a view shows when every shape is the box around it: the visible shape instances of its scene, as they stood
/// when the picture was taken. Immutable.
class BoxPicture {
public:
  BoxPicture(const ShapeView& view, const ShapeScene& scene);

  /// Whether the picture still shows what it would show if it were taken now.
  [[nodiscard]] bool IsCurrent(const ShapeView& view, const ShapeScene& scene) const;
  /// What is to be seen of the shape instance, with the asked point in pixels and depth.
  [[nodiscard]] PickAnswer Look(const ShapeInstance& shape, const dg::DPoint3D& pixel) const;

private:
  struct PlacedBox {
    const ShapeInstance* shape;
    du::SmartPtr<ShapeInstance> held;
    dg::DBox box;
    dg::DMat44 toLocal;
    dg::DBox2D pixels;
  };
  struct Hit {
    const ShapeInstance* shape = nullptr;
    dg::DPoint3D point;
    double depth = 0;
  };
  struct Samples;

  void AddBox(const du::SmartPtr<ShapeInstance>& shape);
  void FillCells();
  [[nodiscard]] int CellOf(double coordinate, int axis) const;
  [[nodiscard]] Hit Cast(const dg::DPoint2D& pixel) const;
  [[nodiscard]] bool Meet(const PlacedBox& box, const dg::DPoint3D& from, const dg::DPoint3D& to, Hit& hit) const;
  [[nodiscard]] Samples Sample(const PlacedBox& box) const;

  const dg::Camera3D camera_;
  const dg::DMat44 toPixel_;
  dg::DMat44 toModel_;
  const int width_;
  const int height_;
  const std::uint64_t changeCount_;
  std::vector<PlacedBox> boxes_;  // in the scene's order
  std::map<const ShapeInstance*, std::size_t> indexOf_;
  int cellsASide_ = 1;
  std::vector<std::vector<std::size_t>> cells_;  // boxes that may cover a part of the window, ascending
};

}  // namespace zrk
