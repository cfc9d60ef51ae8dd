#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk {

class Operation;

/// Puts a finished operation on the undo history of its scene, also when it has no steps, and clears the redo list.
/// Ignored: null, an operation that is not undoable, one that the history already has, and whatever is recorded by the
/// thread that is undoing or redoing in that scene. [any-thread]
ZR_HOST_API void RecordOperation(const du::SmartPtr<Operation>& operation);

}  // namespace zrk
