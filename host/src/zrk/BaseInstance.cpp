#include <zrk/BaseInstance.h>
#include <zrk/Property.h>

namespace zrk {

BaseInstance::~BaseInstance() = default;

}  // namespace zrk
