#include <dom/ObjectManager.h>

namespace dom {

ObjectManager::~ObjectManager() = default;

}  // namespace dom
