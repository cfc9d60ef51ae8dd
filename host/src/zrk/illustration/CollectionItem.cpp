#include <zrk/illustration/CollectionItem.h>

namespace zrk::illustration {

CollectionItem::CollectionItem() = default;

CollectionItem::~CollectionItem() = default;

std::string CollectionItem::GetName() const {
  const dp::MutexGuard guard(nameMutex_);
  return name_;
}

void CollectionItem::SetName(const std::string& name) {
  const dp::MutexGuard guard(nameMutex_);
  name_ = name;
}

std::string CollectionItem::GetObjectName() const {
  return GetName();
}

}  // namespace zrk::illustration
