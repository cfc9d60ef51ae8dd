#include <zrk/MultiRootContainer.h>

namespace zrk {

MultiRootContainer::MultiRootContainer() = default;

MultiRootContainer::~MultiRootContainer() = default;

}  // namespace zrk
