#include <zrk/RecordOperation.h>

#include <zrk/Operation.h>
#include <zrk/UndoHistory.h>

namespace zrk {

void RecordOperation(const du::SmartPtr<Operation>& operation) {
  if (operation && operation->IsUndoable()) UndoHistory::Record(operation);
}

}  // namespace zrk
