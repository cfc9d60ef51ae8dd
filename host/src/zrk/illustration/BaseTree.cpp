#include <zrk/illustration/BaseTree.h>

#include <zrk/BaseTreeObserver.h>

namespace zrk::illustration {

BaseTree::BaseTree() = default;

BaseTree::~BaseTree() = default;

void BaseTree::UnregisterObserver(const du::SmartPtr<BaseTreeObserver>& observer) {
  observers_.Unregister(observer);
}

std::size_t BaseTree::GetObserverCount() const {
  return observers_.GetCount();
}

}  // namespace zrk::illustration
