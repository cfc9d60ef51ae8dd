#include <zrk/CurrentOperation.h>

#include <zrk/Operation.h>

namespace zrk {

namespace {

thread_local const CurrentOperation* innermost = nullptr;

}  // namespace

CurrentOperation::CurrentOperation(const du::SmartPtr<Operation>& operation)
    : operation_(operation), outer_(innermost) {
  innermost = this;
}

CurrentOperation::~CurrentOperation() {
  innermost = outer_;
}

du::SmartPtr<Operation> CurrentOperation::Get() {
  return innermost ? innermost->operation_ : du::SmartPtr<Operation>();
}

}  // namespace zrk
