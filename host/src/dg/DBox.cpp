#include <dg/DBox.h>

#include <algorithm>
#include <limits>

namespace dg {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace

DBox::DBox() : min(kInfinity, kInfinity, kInfinity), max(-kInfinity, -kInfinity, -kInfinity) {}

DBox::DBox(const DPoint3D& minimum, const DPoint3D& maximum) : min(minimum), max(maximum) {}

bool DBox::IsEmpty() const {
  return max.x < min.x || max.y < min.y || max.z < min.z;
}

double DBox::GetWidth() const {
  return IsEmpty() ? 0 : max.x - min.x;
}

double DBox::GetHeight() const {
  return IsEmpty() ? 0 : max.y - min.y;
}

void DBox::Extend(const DPoint3D& point) {
  for (int i = 0; i < 3; ++i) {
    min[i] = std::min(min[i], point[i]);
    max[i] = std::max(max[i], point[i]);
  }
}

}  // namespace dg
