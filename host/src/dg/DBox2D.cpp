#include <dg/DBox2D.h>

namespace dg {

constinit const DBox2D DBox2D::EMPTY;

DBox2D::DBox2D(const DPoint2D& minimum, const DPoint2D& maximum) : min(minimum), max(maximum) {}

bool DBox2D::IsEmpty() const {
  return max.x < min.x || max.y < min.y;
}

bool DBox2D::Contains(const DPoint2D& point, double tolerance) const {
  return !IsEmpty() && point.x >= min.x - tolerance && point.x <= max.x + tolerance && point.y >= min.y - tolerance &&
         point.y <= max.y + tolerance;
}

double DBox2D::GetWidth() const {
  return IsEmpty() ? 0 : max.x - min.x;
}

double DBox2D::GetHeight() const {
  return IsEmpty() ? 0 : max.y - min.y;
}

}  // namespace dg
