#include <zrk/OperationStep.h>

namespace zrk {

OperationStep::OperationStep() = default;

OperationStep::~OperationStep() = default;

void OperationStep::OnAddedToOperation() {}

}  // namespace zrk
