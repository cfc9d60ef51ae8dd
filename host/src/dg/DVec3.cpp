#include <dg/DVec3.h>

namespace dg {

constinit const DVec3 DVec3::ZERO;

}  // namespace dg
