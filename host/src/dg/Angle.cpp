#include <dg/Angle.h>

#include <cmath>
#include <numbers>

namespace dg {

double Angle(const DVec2& vector) {
  constexpr double kFullTurn = 2 * std::numbers::pi;
  // Adding 0 turns a negative zero into a positive one: the zero vector has the angle 0 whatever its signs.
  const double angle = std::atan2(vector.y + 0.0, vector.x + 0.0);
  if (!(angle < 0)) return angle;
  // A tiny negative angle rounds to the full turn itself, which is outside the range.
  const double turned = angle + kFullTurn;
  return turned < kFullTurn ? turned : 0.0;
}

}  // namespace dg
