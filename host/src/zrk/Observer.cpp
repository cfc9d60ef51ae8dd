#include <zrk/Observer.h>

namespace zrk {

Observer::~Observer() = default;

}  // namespace zrk
