#include <zrk/illustration2d/PageBorder2D.h>

namespace zrk::illustration2d {

namespace {

dg::DVec2 Convert(const dg::DVec2& dimensions, dg::LengthUnit::Unit from, dg::LengthUnit::Unit to) {
  return {dg::LengthUnit::Convert(from, to, dimensions.x, 1), dg::LengthUnit::Convert(from, to, dimensions.y, 1)};
}

}  // namespace

PageBorder2D::PageBorder2D(const dg::DVec2& dimensions, dg::LengthUnit::Unit unit)
    : millimeters_(Convert(dimensions, unit, dg::LengthUnit::MILLIMETER)) {}

PageBorder2D::~PageBorder2D() = default;

dg::DVec2 PageBorder2D::GetDimensions(dg::LengthUnit::Unit unit) const {
  return Convert(millimeters_, dg::LengthUnit::MILLIMETER, unit);
}

}  // namespace zrk::illustration2d
