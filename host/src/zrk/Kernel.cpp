#include <zrk/Kernel.h>

#include <atomic>

#include <dom/ManagedObject.h>

namespace zrk {

namespace {

std::atomic<Kernel*> processKernel{nullptr};

}  // namespace

Kernel::Kernel() = default;

Kernel::~Kernel() {
  Kernel* self = this;
  processKernel.compare_exchange_strong(self, nullptr);
  const dp::MutexGuard guard(mutex_);
  for (dom::ManagedObject* object : objects_) object->ReleaseFromManager(*this);
}

Kernel* Kernel::GetKernel() {
  return processKernel;
}

void Kernel::SetKernel(Kernel* kernel) {
  processKernel = kernel;
}

void Kernel::Manage(dom::ManagedObject& object) {
  const dp::MutexGuard guard(mutex_);
  objects_.insert(&object);
}

void Kernel::Forget(dom::ManagedObject& object) {
  const dp::MutexGuard guard(mutex_);
  objects_.erase(&object);
}

bool Kernel::IsManaged(const dom::ManagedObject& object) const {
  const dp::MutexGuard guard(mutex_);
  return objects_.count(const_cast<dom::ManagedObject*>(&object)) > 0;
}

}  // namespace zrk
