#include <zrk/ComponentInstance.h>

namespace zrk {

ComponentInstance::ComponentInstance(const du::Symbol& id) : id_(id) {}

ComponentInstance::~ComponentInstance() = default;

du::Symbol ComponentInstance::GetID() const {
  return id_;
}

}  // namespace zrk
