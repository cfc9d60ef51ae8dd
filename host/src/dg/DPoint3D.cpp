#include <dg/DPoint3D.h>

namespace dg {

constinit const DPoint3D DPoint3D::ORIGIN;

}  // namespace dg
