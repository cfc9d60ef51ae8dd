#include <zrk/PickService.h>

namespace zrk {

PickService::~PickService() = default;

}  // namespace zrk
