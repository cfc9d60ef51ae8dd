#include <dg/DVec2.h>

#include <cmath>

namespace dg {

constinit const DVec2 DVec2::ZERO;

double DVec2::Length() const {
  return std::hypot(x, y);
}

}  // namespace dg
