#pragma once

#include <dg/DVec2.h>
#include <du/Export.h>

namespace dg {

/// Direction of the vector in radians, counter-clockwise from the x axis, in [0, 2*pi). The zero vector gives 0, a
/// coordinate that is not a number gives not a number.
[[nodiscard]] ZR_HOST_API double Angle(const DVec2& vector);

}  // namespace dg
