#pragma once

#include <dg/DVec2.h>
#include <dg/LengthUnit.h>
#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk::illustration2d {

/// The page of a 2D document. Immutable.
class ZR_HOST_API PageBorder2D final : public Object {
public:
  PageBorder2D(const dg::DVec2& dimensions, dg::LengthUnit::Unit unit);
  ~PageBorder2D() override;

  /// Width and height of the page in the given unit.
  [[nodiscard]] dg::DVec2 GetDimensions(dg::LengthUnit::Unit unit) const;

private:
  const dg::DVec2 millimeters_;
};

}  // namespace zrk::illustration2d
