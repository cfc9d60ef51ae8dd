#include <zrk/BaseTreeObserver.h>

namespace zrk {

BaseTreeObserver::~BaseTreeObserver() = default;

}  // namespace zrk
